#include "Benchmarks.h"
#include "ChildProcess.h"
#include "LoadedModule.h"
#include "Measure.h"
#include "base/Failure.h"
#include "services/CabNode.h"
#include "support/DevService.h"

#include <chrono>

namespace Bench {
namespace {

constexpr Figure::Aim unload_aim{false, 2000};
constexpr int dialogs = 5;

using Clock = std::chrono::steady_clock;
Clock::time_point closed; ///< When the last dialog was told to close.

BOOL CALLBACK CloseIfVisible(HWND i_window, LPARAM) {
    if (IsWindowVisible(i_window)) {
        closed = Clock::now();
        PostMessageW(i_window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

void CALLBACK CloseDialogs(HWND, UINT, UINT_PTR, DWORD) {
    EnumThreadWindows(GetCurrentThreadId(), &CloseIfVisible, 0);
}

/// Opens a dialog at the account's root and closes it while the listing hangs.
void LeaveALoadBehind(const LoadedModule& i_module) {
    Qorv::ComPtr<Qorv::IAUX_CabNode> made;
    DevHost::Check(i_module.FileSystem().CreateDlgParams(Qorv::AFS_Dlg_OpenFiles, &made), L"CreateDlgParams");
    const DevHost::CabNode::Node parameters(static_cast<DevHost::CabNode*>(made.Get()));
    const auto folder = i_module.NameOf(L"/");
    parameters->Member(L"InitialPathName")->SetValue(Qorv::ComPtr<IUnknown>(folder.Get()));
    Qorv::ComPtr<Qorv::IAFS_NamesCollection> names;
    LONG choice = 0;
    constexpr UINT until_it_hangs = 200; // Milliseconds.
    const UINT_PTR timer = SetTimer(nullptr, 0, until_it_hangs, &CloseDialogs);
    i_module.FileSystem().ShowDlg(Qorv::AFS_Dlg_OpenFiles, parameters, nullptr, nullptr, &names, &choice);
    KillTimer(nullptr, timer);
}

} // namespace

void MeasureUnloading(Report& io_report, const Effort& i_effort) {
    std::vector<double> times(static_cast<std::size_t>(i_effort.rounds));
    for (double& time : times)
        time = RunChild(L"unload").front();
    io_report.Add({"closing a dialog to unloaded", Median(times), "ms", {}, {}, {}, unload_aim});
}

std::vector<double> UnloadInChild() {
    LoadedModule module;
    module.BindAccount();
    Tests::Service::AddFault(R"({"path": "2/files/list_folder", "delay_ms": 30000, "times": 0})");
    for (int dialog = 0; dialog < dialogs; ++dialog)
        LeaveALoadBehind(module);
    module.Unload();
    const std::chrono::duration<double> time = Clock::now() - closed;
    Tests::Service::ClearFaults();
    return {milliseconds * time.count()};
}

} // namespace Bench
