#pragma once

#include "core/trace/Exceptions.h"
#include "qorv/AuxService.h"
#include "qorv/Values.h"

#include <string>

/// Applies a template resource (type "XML") of the module to one of the host's settings dictionaries. `i_template_name`
/// is the id of the template's root. E_INVALIDARG without a dictionary, otherwise the dictionary's result.
HRESULT ApplyCabTemplate(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* o_cab, const wchar_t* i_resource_id,
                         const wchar_t* i_template_name);

/// A settings dictionary with access to its items by id: `CabNode[L"Title"].p->get_String(&text)`.
class CabDictionary {
public:
    /// The dictionary must outlive this object.
    explicit CabDictionary(Qorv::IAUX_CabNode* i_node) noexcept : m_node(i_node) {}

    /// An item that the dictionary's template declares. Throws an `HResultException` for any other.
    Qorv::ComPtr<Qorv::IAUX_CabNode> operator[](const wchar_t* i_id) const;

    /// The text of a string item; empty for any other item.
    std::wstring StringOrEmpty(const wchar_t* i_id) const;

private:
    Qorv::IAUX_CabNode* m_node;
};
