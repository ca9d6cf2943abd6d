#include "core/host/Cab.h"

#include "core/host/Resource.h"
#include "core/trace/Check.h"

HRESULT ApplyCabTemplate([[maybe_unused]] Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* o_cab,
                         const wchar_t* i_resource_id, const wchar_t* i_template_name) {
    TRACE_FUNCTION();
    CHECK_RETURN(o_cab != nullptr, E_INVALIDARG);
    const Resource template_resource(i_resource_id, L"XML");
    CHECK_HRESULT(o_cab->SetTemplate2(template_resource.GetData(), static_cast<long>(template_resource.GetSize()),
                                      i_template_name));
    return TRACE_RESULT(S_OK);
}

Qorv::ComPtr<Qorv::IAUX_CabNode> CabDictionary::operator[](const wchar_t* i_id) const {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAUX_CabNode> item;
    CHECK_HRESULT_THROW(m_node->get_Item(i_id, &item));
    return item;
}

std::wstring CabDictionary::StringOrEmpty(const wchar_t* i_id) const {
    TRACE_FUNCTION();
    const auto item = (*this)[i_id];
    LONG type = Qorv::AUX_CabType_Empty;
    CHECK_HRESULT_THROW(item->get_Type(&type));
    if (type != Qorv::AUX_CabType_String)
        return {};
    Qorv::Bstr text;
    CHECK_HRESULT_THROW(item->get_String(&text));
    return std::wstring(text.View());
}
