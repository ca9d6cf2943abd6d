#include "ui/dialog/OpenSaveDialog.h"

#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"
#include "ui/dialog/Dialog.h"

namespace Ui {
namespace {

std::unique_ptr<DialogUi> UiOf(Qorv::IQorv_Inst* i_qorv_inst) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IUIX_Inst> service;
    if (FAILED(i_qorv_inst->GetExtension(L"UIX", (IUnknown**)&service)))
        service.Reset();
    return std::make_unique<DialogUi>(service);
}

} // namespace

OpenSaveDialog::OpenSaveDialog(Qorv::IQorv_Plugin* i_plugin, Qorv::IQorv_Inst* i_qorv_inst,
                               Qorv::IAFS_FileSys* i_file_system)
    : m_plugin(i_plugin), m_qorv_inst(i_qorv_inst), m_file_system(i_file_system), m_ui(UiOf(i_qorv_inst)) {
    TRACE_FUNCTION();
}

OpenSaveDialog::~OpenSaveDialog() {
    TRACE_FUNCTION();
}

HRESULT OpenSaveDialog::ShowOpenSinglePlace(Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                            Qorv::IAFS_Name* i_default_folder, HWND i_parent_window) {
    TRACE_FUNCTION();
    CHECK_HRESULT(ShowDialog(true, o_names, io_parameters, i_default_folder, i_parent_window));
    return TRACE_RESULT(S_OK);
}

HRESULT OpenSaveDialog::ShowSaveSinglePlace(Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                            Qorv::IAFS_Name* i_default_folder, HWND i_parent_window) {
    TRACE_FUNCTION();
    CHECK_HRESULT(ShowDialog(false, o_names, io_parameters, i_default_folder, i_parent_window));
    return TRACE_RESULT(S_OK);
}

HRESULT OpenSaveDialog::ShowDialog(bool is_open, Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                   Qorv::IAFS_Name* i_default_folder, HWND i_parent_window) {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_names != nullptr, E_INVALIDARG);
        *o_names = nullptr;
        HRESULT result = E_UNEXPECTED;
        const HRESULT call_result = CallThreadSafe(m_qorv_inst, [&] {
            result = RunDialog(is_open, o_names, io_parameters, i_default_folder, i_parent_window);
        });
        CHECK_HRESULT(call_result);
        CHECK_HRESULT(result);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT OpenSaveDialog::RunDialog(bool is_open, Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                  Qorv::IAFS_Name* i_default_folder, HWND i_parent_window) {
    TRACE_FUNCTION();
    m_ui->LoadImages();
    const Qorv::Dialog::Context context{m_qorv_inst, m_plugin, m_file_system, *m_ui, m_reaper};
    const auto dialog = Qorv::Create<Qorv::Dialog>(context, &io_parameters, i_default_folder);
    CHECK_RETURN(dialog != nullptr, E_OUTOFMEMORY);
    const HRESULT result = dialog->DoModal(is_open, i_parent_window);
    CHECK_HRESULT(result);
    *o_names = dialog->m_files_to_open.Detach();
    return TRACE_RESULT(S_OK);
}

} // namespace Ui
