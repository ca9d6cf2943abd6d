#include "commands/Commands.h"

#include "commands/JsonValue.h"
#include "commands/PluginDialog.h"
#include "commands/Shell.h"

#include <sstream>

namespace DevHost {
namespace {

/// The name of a file type of the list "PDF files|*.pdf|All files|*.*|"; its number if the list is shorter.
std::wstring FilterName(const std::wstring& i_filters, LONG i_index) {
    std::wistringstream parts(i_filters);
    std::wstring name;
    for (LONG part = 0; std::getline(parts, name, L'|'); ++part)
        if (part == 2 * i_index)
            return name;
    return L"number " + std::to_wstring(i_index);
}

void Report(const Output& i_out, const DialogAnswer& i_answer, const std::wstring& i_filters) {
    if (i_out.IsJson()) {
        JsonValue json;
        json.Begin().Texts("locations", i_answer.locations).Integer("filter_index", i_answer.filter_index).End();
        i_out.Json(json.Done());
        return;
    }
    for (const std::wstring& location : i_answer.locations)
        i_out.Line(location);
    if (!i_filters.empty())
        i_out.Note(L"file type: " + FilterName(i_filters, i_answer.filter_index));
}

void ShowAndReport(Shell& io_shell, Qorv::AFS_DlgType i_type, const DialogOptions& i_options) {
    const DialogAnswer answer = ShowPluginDialog(io_shell, i_type, i_options);
    const auto filters = i_options.items.find(L"FileFilters");
    Report(io_shell.Out(), answer,
           filters != i_options.items.end() ? std::get<std::wstring>(filters->second) : std::wstring());
}

} // namespace

void OpenByDialog(Shell& io_shell, const CommandLine& i_line) {
    ShowAndReport(io_shell, i_line.Has("--folder") ? Qorv::AFS_Dlg_SelectFolder : Qorv::AFS_Dlg_OpenFiles,
                  DialogOptions(i_line));
}

void SaveByDialog(Shell& io_shell, const CommandLine& i_line) {
    ShowAndReport(io_shell, Qorv::AFS_Dlg_SaveFile, DialogOptions(i_line));
}

} // namespace DevHost
