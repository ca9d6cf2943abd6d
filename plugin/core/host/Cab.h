#pragma once

#include "core/trace/Exceptions.h"
#include "qorv/AuxService.h"
#include "qorv/Values.h"

#include <string>

/// Applies a template resource (type "XML") of the module to a settings dictionary of the host. `i_template_name` is
/// the id of the template's root. E_INVALIDARG without a dictionary, else what the dictionary answers.
HRESULT ApplyCabTemplate(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* o_cab, const wchar_t* i_resource_id,
                         const wchar_t* i_template_name);

/// A settings dictionary whose items are reached by id: `CabNode[L"Title"].p->get_String(&text)`.
class CabDictionary {
public:
    /// Borrows the dictionary.
    explicit CabDictionary(Qorv::IAUX_CabNode* i_node) noexcept : m_node(i_node) {}

    /// An item that the dictionary's template declares. Throws an `HResultException` for every other.
    Qorv::ComPtr<Qorv::IAUX_CabNode> operator[](const wchar_t* i_id) const;

    /// The text of an item that holds a string, and the empty text for every other.
    std::wstring StringOrEmpty(const wchar_t* i_id) const;

private:
    Qorv::IAUX_CabNode* m_node;
};
