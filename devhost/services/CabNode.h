#pragma once

#include "qorv/CoClass.h"
#include "qorv/Values.h"
#include "services/CabTemplate.h"

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace DevHost {

/// A node of a settings dictionary. A new node is an empty dictionary without a template.
///
/// A template limits what a plug-in can reach and store. Existing values stay unchanged: those without a place in the
/// template are saved with the dictionary, out of the plug-in's reach. One thread at a time.
class CabNode final : public Qorv::CoClass<CabNode, Qorv::IAUX_CabNode> {
public:
    using Node = Qorv::ComPtr<CabNode>;
    using Dictionary = std::vector<std::pair<std::wstring, Node>>;
    using Array = std::vector<Node>;
    using Value = std::variant<Dictionary, std::monostate, LONG, std::wstring, Qorv::ComPtr<IUnknown>, Array>;

    HRESULT STDMETHODCALLTYPE SetTemplate2(const void* i_data, LONG i_size, Qorv::PCStr i_root_id) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Item(Qorv::PCStr i_id, Qorv::IAUX_CabNode** o_item) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Type(LONG* o_type) noexcept override;
    HRESULT STDMETHODCALLTYPE get_v(VARIANT* o_value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_v(const VARIANT& i_value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_String(BSTR* o_value) noexcept override;

    // For the host itself, which no template restricts.
    const Value& GetValue() const noexcept { return m_value; }
    void SetValue(Value i_value) { m_value = std::move(i_value); }
    /// An item of a dictionary; created empty if missing.
    Node Member(std::wstring_view i_id);
    /// The text of a dictionary's item; empty if it is missing or not a text.
    std::wstring MemberText(std::wstring_view i_id) const;

private:
    /// Puts the node, and what a dictionary declares below it, under a template.
    void Apply(const std::shared_ptr<const CabTemplate>& i_template, const CabTemplate::Item& i_item, int i_depth);
    Node Find(std::wstring_view i_id) const;

    Value m_value;
    std::shared_ptr<const CabTemplate> m_template; ///< Null while there is none.
    CabTemplate::Item m_declared;                  ///< Meaningless without a template.
};

} // namespace DevHost
