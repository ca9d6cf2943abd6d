// The plug-in's own dialogs.

#include "afs/FileSystem.h"
#include "afs/Name.h"
#include "afs/Session.h"
#include "core/Cab.h"
#include "core/Check.h"
#include "core/Plugin.h"
#include "core/ResourceIds.h"

namespace {

constexpr wchar_t parameters_template[] = L"OpenSaveDialogParametersCabTemplateV1";
constexpr wchar_t initial_path_name[] = L"InitialPathName";

/// The object that the parameters name as the folder to begin in; null when they name none.
HRESULT InitialFolderOf(Qorv::IAUX_Inst* i_aux_instance, Qorv::IAUX_CabNode* i_cab,
                        Qorv::ComPtr<IUnknown>& o_initial_folder) {
    TRACE_FUNCTION();
    CHECK_HRESULT(ApplyCabTemplate(i_aux_instance, i_cab, MAKEINTRESOURCE(IDR_OPEN_SAVE_DIALOG_PARAMETERS_CAB_XML),
                                   parameters_template));
    const CabDictionary CabNode(i_cab);
    Qorv::Variant value;
    CHECK_HRESULT(CabNode[initial_path_name].p->get_v(&value));
    if (value->vt == VT_UNKNOWN)
        o_initial_folder = value->punkVal;
    return TRACE_RESULT(S_OK);
}

} // namespace

HRESULT STDMETHODCALLTYPE FileSystem::CreateDlgParams(ULONG i_dialog_type,
                                                      Qorv::IAUX_CabNode** o_dialog_parameters) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_dialog_parameters != nullptr, E_POINTER);
    *o_dialog_parameters = nullptr;
    CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
    CHECK_HRESULT(m_plugin->m_afs_inst->CreateDlgDefaultParams(i_dialog_type, o_dialog_parameters));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::ShowDlg(ULONG i_dialog_type, Qorv::IAUX_CabNode* io_dialog_parameters,
                                              Qorv::IAFS_Name* i_initial_folder, HWND,
                                              Qorv::IAFS_NamesCollection** o_names, LONG* o_user_choise) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_names != nullptr, E_POINTER);
        *o_names = nullptr;
        CHECK_RETURN(o_user_choise != nullptr, E_POINTER); // The spelling is meant.
        *o_user_choise = Qorv::AFS_UserChoice_Cancel;
        CHECK_RETURN(io_dialog_parameters != nullptr, E_INVALIDARG);
        CHECK_RETURN(i_dialog_type == Qorv::AFS_Dlg_OpenFiles || i_dialog_type == Qorv::AFS_Dlg_SaveFile ||
                         i_dialog_type == Qorv::AFS_Dlg_SelectFolder,
                     E_INVALIDARG);
        const auto initial_folder = GetName(i_initial_folder);
        CHECK_RETURN(i_initial_folder == nullptr || initial_folder != nullptr, E_INVALIDARG);
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        Qorv::ComPtr<IUnknown> initial_path_object;
        CHECK_HRESULT(InitialFolderOf(m_plugin->m_aux_inst, io_dialog_parameters, initial_path_object));
        const auto parameters_initial_folder = GetName(initial_path_object);
        CHECK_RETURN(parameters_initial_folder != nullptr, E_INVALIDARG);
        if (initial_folder != nullptr)
            CHECK_RETURN(initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id ==
                             parameters_initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id,
                         E_INVALIDARG);
        return TRACE_RESULT(E_NOTIMPL);
    };
}
