#pragma once

#include "qorv/Afs.h"
#include "qorv/Host.h"
#include "ui/dialog/DialogParameters.h"
#include "ui/folder/Reaper.h"
#include "ui/list/DialogUi.h"

#include <memory>

namespace Ui {

/// The plug-in's Open and Save dialogs: one for each request, run on the UI thread. Nothing of a request is kept.
class OpenSaveDialog {
public:
    /// `i_plugin` is kept alive as long as dialogs can be shown.
    OpenSaveDialog(Qorv::IQorv_Plugin* i_plugin, Qorv::IQorv_Inst* i_qorv_inst, Qorv::IAFS_FileSys* i_file_system);
    /// Waits for whatever closed dialogs left running, and serves thread-safe calls meanwhile. UI thread.
    ~OpenSaveDialog();
    OpenSaveDialog(const OpenSaveDialog&) = delete;
    OpenSaveDialog& operator=(const OpenSaveDialog&) = delete;

    // Show a dialog and wait for its end; any thread. `o_names` receives what the user chose, which is null unless S_OK
    // is returned; `Qorv::ErrorCanceled` when the user chose nothing. `io_parameters` receives the filter that the user
    // ended on. The default folder, which may be null, is what the dialog shows first, else the parameters' folder. The
    // parent may be null for the host's main frame.
    HRESULT ShowOpenSinglePlace(Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                Qorv::IAFS_Name* i_default_folder, HWND i_parent_window);
    HRESULT ShowSaveSinglePlace(Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                                Qorv::IAFS_Name* i_default_folder, HWND i_parent_window);

private:
    HRESULT ShowDialog(bool is_open, Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                       Qorv::IAFS_Name* i_default_folder, HWND i_parent_window);
    HRESULT RunDialog(bool is_open, Qorv::IAFS_NamesCollection** o_names, DialogParameters& io_parameters,
                      Qorv::IAFS_Name* i_default_folder, HWND i_parent_window);

    Qorv::ComPtr<Qorv::IQorv_Plugin> m_plugin;
    Qorv::ComPtr<Qorv::IQorv_Inst> m_qorv_inst;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    std::unique_ptr<DialogUi> m_ui;
    Reaper m_reaper;
};

} // namespace Ui
