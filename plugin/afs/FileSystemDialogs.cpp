// The plug-in's own dialogs.

#include "afs/FileSystem.h"
#include "afs/Name.h"
#include "afs/Session.h"
#include "core/EventsHandler.h"
#include "core/host/HostServices.h"
#include "core/trace/Check.h"
#include "ui/dialog/OpenSaveDialog.h"

namespace {

/// The flags for the dialog: the caller's, or the default for this kind of dialog, and the bit for choosing folders,
/// which no caller can set.
LONG DialogFlags(LONG i_flags, ULONG i_dialog_type) noexcept {
    TRACE_FUNCTION();
    using Ui::DialogParameters;
    i_flags &= ~DialogParameters::ChooseFolder;
    if (i_flags == 0)
        i_flags = i_dialog_type == Qorv::AFS_Dlg_SaveFile ? DialogParameters::AskBeforeReplacing
                                                          : DialogParameters::SeveralNames;
    return i_dialog_type == Qorv::AFS_Dlg_SelectFolder ? i_flags | DialogParameters::ChooseFolder : i_flags;
}

} // namespace

HRESULT STDMETHODCALLTYPE FileSystem::CreateDlgParams(ULONG i_dialog_type,
                                                      Qorv::IAUX_CabNode** o_dialog_parameters) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_dialog_parameters != nullptr, E_POINTER);
        *o_dialog_parameters = nullptr;
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        CHECK_HRESULT(m_plugin->m_afs_inst->CreateDlgDefaultParams(i_dialog_type, o_dialog_parameters));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::ShowDlg(ULONG i_dialog_type, Qorv::IAUX_CabNode* io_dialog_parameters,
                                              Qorv::IAFS_Name* i_initial_folder, HWND i_parent_window,
                                              Qorv::IAFS_NamesCollection** o_names, LONG* o_user_choise) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_names != nullptr, E_POINTER);
        *o_names = nullptr;
        CHECK_RETURN(o_user_choise != nullptr, E_POINTER); // The misspelling is deliberate.
        *o_user_choise = Qorv::AFS_UserChoice_Cancel;
        CHECK_RETURN(io_dialog_parameters != nullptr, E_INVALIDARG);
        CHECK_RETURN(i_dialog_type == Qorv::AFS_Dlg_OpenFiles || i_dialog_type == Qorv::AFS_Dlg_SaveFile ||
                         i_dialog_type == Qorv::AFS_Dlg_SelectFolder,
                     E_INVALIDARG);
        const auto initial_folder = GetName(i_initial_folder);
        CHECK_RETURN(i_initial_folder == nullptr || initial_folder != nullptr, E_INVALIDARG);
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        Ui::DialogParameters parameters;
        CHECK_HRESULT(parameters.LoadFromCab(m_plugin->m_aux_inst, io_dialog_parameters));
        const auto parameters_initial_folder = GetName(parameters.InitialPathName);
        CHECK_RETURN(parameters_initial_folder != nullptr, E_INVALIDARG);
        if (initial_folder != nullptr)
            CHECK_RETURN(initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id ==
                             parameters_initial_folder->GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id,
                         E_INVALIDARG);
        CHECK_RETURN(m_plugin->GetEventsHandler() != nullptr, E_UNEXPECTED);
        const auto dialog = m_plugin->GetEventsHandler()->GetDialog();
        CHECK_RETURN(dialog != nullptr, E_UNEXPECTED);

        const Qorv::ComPtr<Qorv::IAUX_Inst> aux_inst = m_plugin->m_aux_inst; // The plug-in may be unloaded meanwhile.
        // A copy of the name: a load may continue after the dialog, when the caller uses its names again.
        const auto default_folder =
            (initial_folder != nullptr ? initial_folder : parameters_initial_folder)->CreateUnbound();
        parameters.Flags = DialogFlags(parameters.Flags, i_dialog_type);
        if (i_dialog_type == Qorv::AFS_Dlg_SaveFile)
            CHECK_HRESULT(dialog->ShowSaveSinglePlace(o_names, parameters, default_folder, i_parent_window));
        else
            CHECK_HRESULT(dialog->ShowOpenSinglePlace(o_names, parameters, default_folder, i_parent_window));
        *o_user_choise = Qorv::AFS_UserChoice_OK;
        parameters.SaveToCab(aux_inst, io_dialog_parameters); // The choice is valid even if its filter cannot be saved.
        return TRACE_RESULT(S_OK);
    };
}
