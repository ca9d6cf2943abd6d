// A dialog's life relative to those of the plug-in, its owner and its caller's names.

#include "afs/AfsTest.h"
#include "core/host/ModalOwner.h"
#include "script/KeySteps.h"
#include "services/CabNode.h"
#include "support/OddHost.h"
#include "support/OnceInUse.h"
#include "ui/dialog/DialogParameters.h"
#include "ui/dialog/OpenSaveDialog.h"

#include <psapi.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace {

using Qorv::ComPtr;

class DialogLifeTest : public Tests::AfsTest {
protected:
    DialogLifeTest() { Tests::WriteBytes(Tests::Service::LocalPath(L"/a.pdf"), "a"); }

    HRESULT Show(HWND i_owner = nullptr) {
        const auto parameters = Qorv::Create<DevHost::CabNode>();
        parameters->Member(L"InitialPathName")->SetValue(ComPtr<IUnknown>(m_root.Get()));
        return m_file_system->ShowDlg(Qorv::AFS_Dlg_OpenFiles, parameters, nullptr, i_owner, &m_names, &m_choice);
    }

    ComPtr<Qorv::IAFS_NamesCollection> m_names;
    LONG m_choice = 0;
};

TEST_F(DialogLifeTest, OutlivesTheUnloadOfThePlugIn) {
    const Tests::OnceInUse unload([this](HWND i_window) {
        if (!DevHost::WaitForText(i_window, L"a.pdf"))
            return false;
        Unload();
        return DevHost::PressKey(i_window, L"F5") && DevHost::CloseByBox(i_window, {});
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, Show());
    EXPECT_EQ(nullptr, m_names);
    EXPECT_HRESULT(E_UNEXPECTED, Show()) << "there is no dialog any more";
}

TEST_F(DialogLifeTest, EndsTogetherWithItsOwner) {
    const HWND owner = CreateWindowW(L"STATIC", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                     nullptr, nullptr, nullptr);
    const Tests::OnceInUse destroy([owner](HWND i_window) {
        return i_window != owner && DevHost::WaitForText(i_window, L"a.pdf") && DestroyWindow(owner) != FALSE;
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, Show(owner));
    EXPECT_FALSE(IsWindow(owner));
}

TEST_F(DialogLifeTest, StandsBetweenTheHostsFrameAndWhatComesNext) {
    const auto host = Qorv::Create<Tests::OddHost>(m_host);
    host->frame = CreateWindowW(L"STATIC", L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                                nullptr, nullptr);
    Ui::OpenSaveDialog dialog(m_plugin, host, m_file_system);
    Ui::DialogParameters parameters;
    const Tests::OnceInUse look([&](HWND i_window) {
        if (i_window == host->frame || !DevHost::WaitForText(i_window, L"a.pdf"))
            return false;
        EXPECT_EQ(host->frame, GetWindow(i_window, GW_OWNER));
        SetForegroundWindow(GetDesktopWindow()); // Another program is active: none of our windows is.
        EXPECT_EQ(i_window, Ui::ModalOwner(host)) << "the frame is disabled, and a second dialog is not for it";
        return DevHost::CloseByBox(i_window, {});
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, dialog.ShowOpenSinglePlace(&m_names, parameters, m_root, nullptr));
    DestroyWindow(host->frame);
}

/// The highest slot that some new objects get in one of the system's tables. They fill the gaps first, so it grows with
/// each object that is left behind. Wine 8 has no other count.
template <typename Create, typename Destroy>
std::uintptr_t HighestSlot(Create i_create, Destroy i_destroy, std::uintptr_t i_unit) {
    constexpr std::uintptr_t slots = 0xFFFF; // What is above them tells old handles of a slot from its new one.
    std::array<decltype(i_create()), 256> objects{};
    std::uintptr_t highest = 0;
    for (auto& object : objects) {
        object = i_create();
        highest = std::max(highest, (reinterpret_cast<std::uintptr_t>(object) & slots) / i_unit);
    }
    std::ranges::for_each(objects, i_destroy);
    return highest;
}

/// What this process uses.
struct Usage {
    std::uintptr_t handles = HighestSlot([] { return CreateEventW(nullptr, FALSE, FALSE, nullptr); }, &CloseHandle, 4);
    std::uintptr_t gdi_objects = HighestSlot([] { return CreatePen(PS_SOLID, 1, 0x123456); }, &DeleteObject, 1);
    std::uintptr_t user_objects = HighestSlot(&CreateMenu, &DestroyMenu, 2);
    SIZE_T bytes = BytesInUse();

    static SIZE_T BytesInUse() {
        PROCESS_MEMORY_COUNTERS memory{};
        memory.cb = sizeof memory;
        GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
        return memory.WorkingSetSize;
    }
};

TEST_F(DialogLifeTest, LeavesNothingBehindAfterManyRuns) {
    const char* const text = std::getenv("DIALOG_RUNS");
    const int runs = text == nullptr ? 20 : std::atoi(text);
    std::optional<Usage> before;
    for (int run = 0; run < runs; ++run) {
        if (run == 5) // What the system creates only once exists by now.
            before.emplace();
        // Every other one while it still loads.
        const Tests::OnceInUse close([run](HWND i_window) {
            return (run % 2 == 0 || DevHost::WaitForText(i_window, L"a.pdf")) && DevHost::CloseByBox(i_window, {});
        });
        EXPECT_HRESULT(Qorv::ErrorCanceled, Show());
    }
    const Usage after;
    std::cout << runs << " dialogs: handles " << before->handles << " to " << after.handles << ", GDI objects "
              << before->gdi_objects << " to " << after.gdi_objects << ", USER objects " << before->user_objects
              << " to " << after.user_objects << ", KiB " << before->bytes / 1024 << " to " << after.bytes / 1024
              << std::endl;
    EXPECT_LE(after.handles, before->handles + 5);
    EXPECT_LE(after.gdi_objects, before->gdi_objects + 5);
    EXPECT_LE(after.user_objects, before->user_objects + 5);
    EXPECT_LE(after.bytes, before->bytes + (4U << 20));
}

TEST_F(DialogLifeTest, NoticesAnEndThatTheHostNeverDelivers) {
    const auto host = Qorv::Create<Tests::OddHost>(m_host);
    host->is_deaf_to_workers = true;
    Ui::OpenSaveDialog dialog(m_plugin, host, m_file_system);
    Ui::DialogParameters parameters;
    const auto try_again = [&](HWND i_window) {
        if (!DevHost::WaitForText(i_window, L"couldn't be loaded"))
            return false;
        host->is_deaf_to_workers = false;
        return DevHost::PressButton(i_window, L"Try again");
    };
    const std::function<bool(HWND)> steps[] = {
        try_again, // The first load.
        [&](HWND i_window) {
            if (!DevHost::WaitForText(i_window, L"a.pdf"))
                return false;
            host->is_deaf_to_workers = true;
            return DevHost::PressButton(i_window, L"New folder");
        },
        [](HWND i_window) { return DevHost::PressKey(i_window, L"Enter"); },
        try_again, // The command, whose end loads the folder again.
        [](HWND i_window) { return DevHost::WaitForText(i_window, L"a.pdf") && DevHost::CloseByBox(i_window, {}); },
    };
    std::size_t step = 0;
    const Tests::OnceInUse walk([&](HWND i_window) { return (step += steps[step](i_window)) == std::size(steps); });
    EXPECT_HRESULT(Qorv::ErrorCanceled, dialog.ShowOpenSinglePlace(&m_names, parameters, m_root, nullptr));
    EXPECT_EQ(std::size(steps), step);
    EXPECT_TRUE(std::filesystem::exists(Tests::Service::LocalPath(L"/New folder")));
}

TEST_F(DialogLifeTest, NeedsAPlaceForTheNames) {
    Ui::OpenSaveDialog dialog(m_plugin, m_host, m_file_system);
    Ui::DialogParameters parameters;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, dialog.ShowOpenSinglePlace(nullptr, parameters, m_root, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, dialog.ShowSaveSinglePlace(nullptr, parameters, m_root, nullptr));
    EXPECT_TRUE(log.Has("Ui::OpenSaveDialog::ShowDialog<-- Expression: \"o_names != nullptr\" caused returning"));
}

} // namespace
