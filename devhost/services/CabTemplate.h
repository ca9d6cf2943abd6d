#pragma once

#include "qorv/AuxService.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace DevHost {

/// What a settings dictionary may hold: a `CabTemplate` document.
class CabTemplate {
public:
    struct Item {
        std::wstring id; ///< Empty for the elements of an array.
        Qorv::AUX_CabType type = Qorv::AUX_CabType_Empty;
        std::wstring item_set; ///< What a dictionary or an array holds.
    };
    using Items = std::vector<Item>;

    /// Throws a `Failure` with E_INVALIDARG for a document that isn't a template.
    static std::shared_ptr<const CabTemplate> Parse(const void* i_data, std::size_t i_size);

    /// The root, which is a dictionary. Throws a `Failure` with E_INVALIDARG when the document's root has another id.
    const Item& Root(const std::wstring& i_id) const;

    /// The items of a set; none if the document lacks the set.
    const Items& ItemSet(const std::wstring& i_id) const;

private:
    Item m_root;
    std::map<std::wstring, Items> m_item_sets;
};

} // namespace DevHost
