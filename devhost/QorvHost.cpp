// qorvhost: a small host for the plug-in, from the command line.

#include "base/Unicode.h"
#include "browser/BrowserRegistration.h"
#include "commands/CommandLine.h"
#include "commands/Shell.h"
#include "script/WindowScript.h"
#include "wine/WineNetwork.h"

#include <array>
#include <optional>

namespace {

Qorv::ComPtr<DevHost::CancelFlag> g_cancel_flag;

/// The first Ctrl+C ends the running operation in order. One that does not end, because the service is silent or a
/// window is open, ends with the program, as it does at the second Ctrl+C. No file is left half-written even then.
BOOL WINAPI OnConsoleEvent(DWORD i_event) {
    if (i_event != CTRL_C_EVENT)
        return FALSE;
    VARIANT_BOOL is_canceled = VARIANT_FALSE;
    g_cancel_flag->get_IsCanceled(&is_canceled);
    g_cancel_flag->Cancel();
    constexpr DWORD time_to_end = 1000;
    if (is_canceled == VARIANT_FALSE)
        Sleep(time_to_end); // The main thread ends the process.
    DevHost::Output(false).Note(L"Stopped by Ctrl+C");
    TerminateProcess(GetCurrentProcess(), DevHost::exit_interrupted);
    return TRUE;
}

/// The script named by QORVHOST_WINDOW_SCRIPT; empty if there is none.
std::wstring WindowScriptFile() {
    std::array<wchar_t, 1024> file{};
    const DWORD length = GetEnvironmentVariableW(L"QORVHOST_WINDOW_SCRIPT", file.data(), DWORD{file.size()});
    return {file.data(), length < file.size() ? length : 0};
}

int Run(const DevHost::CommandLine& i_line) {
    DevHost::RedirectWinInet();
    std::optional<DevHost::BrowserRegistration> own_browser;
    if (DevHost::IsWine()) // Wine's own browser cannot show a page.
        own_browser.emplace();
    std::optional<DevHost::WindowScript> script;
    if (const std::wstring file = WindowScriptFile(); !file.empty())
        script.emplace(file);
    DevHost::Shell shell(i_line.ProgramOptions(), g_cancel_flag);
    const int result = shell.Execute(i_line);
    const int end = shell.Finish();
    if (script && !script->End())
        return DevHost::exit_failed;
    return end != 0 ? end : result;
}

} // namespace

int wmain(int i_count, wchar_t** i_arguments) {
    SetProcessDPIAware(); // The dialogs do their own scaling.
    OleInitialize(nullptr);
    g_cancel_flag = Qorv::Create<DevHost::CancelFlag>();
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
    int result = DevHost::exit_failed;
    try {
        result = Run(DevHost::CommandLine({i_arguments + 1, i_arguments + i_count}));
    } catch (const DevHost::UsageError& error) {
        DevHost::Output(false).Note(DevHost::FromUtf8(error.what()));
        result = DevHost::exit_usage;
    } catch (const std::exception& error) {
        DevHost::Output(false).Note(DevHost::FromUtf8(error.what()));
    }
    OleUninitialize();
    return result;
}
