// A dialog's life relative to those of the plug-in, its owner and its caller's names.

#include "afs/AfsTest.h"
#include "core/host/ModalOwner.h"
#include "script/KeySteps.h"
#include "services/CabNode.h"
#include "support/OnceInUse.h"
#include "ui/OddHost.h"
#include "ui/dialog/DialogParameters.h"
#include "ui/dialog/OpenSaveDialog.h"

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

TEST_F(DialogLifeTest, LeavesNothingBehindAfterManyRuns) {
    DWORD handles_before = 0, handles_after = 0;
    for (int run = 0; run < 20; ++run) {
        if (run == 5) // What the system creates only once exists by now.
            GetProcessHandleCount(GetCurrentProcess(), &handles_before);
        // Every other one while it still loads.
        const Tests::OnceInUse close([run](HWND i_window) {
            return (run % 2 == 0 || DevHost::WaitForText(i_window, L"a.pdf")) && DevHost::CloseByBox(i_window, {});
        });
        EXPECT_HRESULT(Qorv::ErrorCanceled, Show());
    }
    GetProcessHandleCount(GetCurrentProcess(), &handles_after);
    EXPECT_LE(handles_after, handles_before + 5);
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
