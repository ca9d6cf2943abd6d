#include "ui/dialog/DialogParameters.h"

#include "core/host/Cab.h"
#include "core/host/ResourceIds.h"
#include "core/trace/Check.h"

namespace {

LONG NumberOf(const CabDictionary& CabNode, const wchar_t* i_id) {
    TRACE_FUNCTION();
    Qorv::Variant value;
    return SUCCEEDED(CabNode[i_id].p->get_v(&value)) && value->vt == VT_I4 ? value->lVal : 0;
}

Qorv::Bstr StringOf(const CabDictionary& CabNode, const wchar_t* i_id) {
    TRACE_FUNCTION();
    Qorv::Bstr text(CabNode.StringOrEmpty(i_id));
    CHECK_THROW(text != nullptr, HResultException(E_OUTOFMEMORY));
    return text;
}

/// An item's object by the wanted interface; null if it doesn't have it.
template <typename Interface>
Qorv::ComPtr<Interface> ObjectOf(const CabDictionary& CabNode, const wchar_t* i_id) {
    TRACE_FUNCTION();
    Qorv::Variant value;
    if (FAILED(CabNode[i_id].p->get_v(&value)) || (value->vt != VT_UNKNOWN && value->vt != VT_DISPATCH))
        return nullptr;
    return Qorv::ComPtr<IUnknown>(value->punkVal).As<Interface>(); // A dispatch interface is an unknown too.
}

} // namespace

HRESULT Ui::DialogParameters::LoadFromCab(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* i_cab) {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(ApplyCabTemplate(i_aux_instance, i_cab, MAKEINTRESOURCE(IDR_OPEN_SAVE_DIALOG_PARAMETERS_CAB_XML),
                                       L"OpenSaveDialogParametersCabTemplateV1"));
        const CabDictionary CabNode(i_cab);
        Flags = NumberOf(CabNode, L"Flags");
        Title = StringOf(CabNode, L"Title");
        ActionBtnTitle = StringOf(CabNode, L"ActionBtnTitle");
        CancelBtnTitle = StringOf(CabNode, L"CancelBtnTitle");
        SettingsBtnTitle = StringOf(CabNode, L"SettingsBtnTitle");
        FileFilters = StringOf(CabNode, L"FileFilters");
        FileFilterIndex = NumberOf(CabNode, L"FileFilterIndex");
        DefaultExt = StringOf(CabNode, L"DefaultExt");
        InitialPathName = ObjectOf<Qorv::IAFS_Name>(CabNode, L"InitialPathName");
        InitialFileName = StringOf(CabNode, L"InitialFileName");
        SettingsBtnCallbacks = ObjectOf<Qorv::IUIX_SettingsBtnCallbacks>(CabNode, L"SettingsBtnCallbacks");
        return TRACE_RESULT(S_OK);
    };
}

HRESULT Ui::DialogParameters::SaveToCab(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* i_cab) const {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(ApplyCabTemplate(i_aux_instance, i_cab, MAKEINTRESOURCE(IDR_OPEN_SAVE_DIALOG_PARAMETERS_CAB_XML),
                                       L"OpenSaveDialogParametersCabTemplateV1"));
        const CabDictionary CabNode(i_cab);
        const Qorv::Variant value(FileFilterIndex);
        CHECK_HRESULT(CabNode[L"FileFilterIndex"].p->put_v(value));
        return TRACE_RESULT(S_OK);
    };
}
