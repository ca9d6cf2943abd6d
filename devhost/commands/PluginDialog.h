#pragma once

#include "commands/DialogOptions.h"
#include "qorv/Afs.h"

#include <string>
#include <vector>

namespace DevHost {

class Shell;

/// What the user of a plug-in's dialog chose.
struct DialogAnswer {
    std::vector<std::wstring> locations;
    LONG filter_index = 0; ///< The file type that was chosen last, as the dialog wrote it back.
};

/// Shows the plug-in's dialog, and returns when it is closed. Throws a `Failure`, with `Qorv::ErrorCanceled` when the
/// user chose nothing.
DialogAnswer ShowPluginDialog(Shell& io_shell, Qorv::AFS_DlgType i_type, const DialogOptions& i_options);

} // namespace DevHost
