#include "commands/Commands.h"

#include "JsonValue.h"
#include "Shell.h"
#include "commands/PluginDialog.h"

namespace DevHost {
namespace {

void Report(const Output& i_out, const DialogAnswer& i_answer, bool i_has_filters) {
    if (i_out.IsJson()) {
        JsonValue json;
        json.Begin().Texts("locations", i_answer.locations).Integer("filter_index", i_answer.filter_index).End();
        i_out.Json(json.Done());
        return;
    }
    for (const std::wstring& location : i_answer.locations)
        i_out.Line(location);
    if (i_has_filters)
        i_out.Note(L"the file type chosen is number " + std::to_wstring(i_answer.filter_index) + L", counted from 0");
}

void ShowAndReport(Shell& io_shell, Qorv::AFS_DlgType i_type, const DialogOptions& i_options) {
    Report(io_shell.Out(), ShowPluginDialog(io_shell, i_type, i_options), i_options.items.contains(L"FileFilters"));
}

} // namespace

void OpenByDialog(Shell& io_shell, const Arguments& i_arguments) {
    const DialogOptions options = DialogOptions::Parse(i_arguments);
    ShowAndReport(io_shell, options.selects_folder ? Qorv::AFS_Dlg_SelectFolder : Qorv::AFS_Dlg_OpenFiles, options);
}

void SaveByDialog(Shell& io_shell, const Arguments& i_arguments) {
    const DialogOptions options = DialogOptions::Parse(i_arguments);
    if (options.selects_folder)
        throw UsageError(L"--folder is for open-dialog");
    ShowAndReport(io_shell, Qorv::AFS_Dlg_SaveFile, options);
}

} // namespace DevHost
