#include "core/host/LocalizedText.h"
#include "core/host/MessageBox.h"
#include "core/host/ModalOwner.h"

#include "support/HostTest.h"
#include "support/OddHost.h"
#include "support/OnceInUse.h"
#include "support/Outcome.h"

#include <shlwapi.h>

#include <thread>

namespace {

class MessageBoxTest : public Tests::HostTest {
protected:
    void Merge(const std::string& i_strings) {
        const std::string table = "<localization language=\"en\" namespace=\"t\">" + i_strings + "</localization>";
        Qorv::ComPtr<IStream> stream;
        stream.Attach(SHCreateMemStream(reinterpret_cast<const BYTE*>(table.data()), static_cast<UINT>(table.size())));
        ASSERT_EQ(S_OK, m_host->MergeLocalization(stream));
    }

    HRESULT AskForUser(ULONG& o_answer) {
        return Ui::ShowMessageBox(m_host, Ui::FormatString(m_host, L"db.msg.wrongUser"), Qorv::UIX_MsgBox_IconWarning,
                                  {L"db.btn.chooseUser", L"db.btn.cancel"}, o_answer);
    }
};

TEST_F(MessageBoxTest, PutsArgumentsIntoALocalizedText) {
    Merge(R"(<string id="both">%1 and %2, %1</string><string id="odd">100% of %3 %0 %x%</string>)");
    EXPECT_EQ(L"a and b, a", Ui::FormatString(m_host, L"t.both", {L"a", L"b"}));
    EXPECT_EQ(L"%2 and b, %2", Ui::FormatString(m_host, L"t.both", {L"%2", L"b"})) << "an argument is no format";
    EXPECT_EQ(L"a and %2, a", Ui::FormatString(m_host, L"t.both", {L"a"})) << "a place without an argument";
    EXPECT_EQ(L"100% of %3 %0 %x%", Ui::FormatString(m_host, L"t.odd", {L"a", L"b"}));
    EXPECT_EQ(L"t.missing", Ui::FormatString(m_host, L"t.missing", {L"a"}));
}

TEST_F(MessageBoxTest, AnswersWithTheButtonThatWasPressed) {
    ULONG answer = 9;
    {
        const Tests::OnceInUse press([](HWND window) { return DevHost::PressButton(window, L"Choose user"); });
        EXPECT_HRESULT(S_OK, AskForUser(answer));
        EXPECT_EQ(0U, answer);
    }
    {
        const Tests::OnceInUse press([](HWND window) { return DevHost::PressButton(window, L"Cancel"); });
        EXPECT_HRESULT(S_OK, AskForUser(answer));
        EXPECT_EQ(1U, answer);
    }
    const Tests::OnceInUse close([](HWND window) { return DevHost::CloseByBox(window, {}); });
    EXPECT_HRESULT(S_OK, AskForUser(answer));
    EXPECT_EQ(1U, answer) << "the close box answers like the last button";
}

TEST_F(MessageBoxTest, BelongsToTheOwnerThatItIsGiven) {
    const HWND owner = CreateWindowW(L"STATIC", L"owner", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    HWND owner_of_box = nullptr;
    const Tests::OnceInUse press([&](HWND window) {
        owner_of_box = GetWindow(window, GW_OWNER);
        return DevHost::PressButton(window, L"Cancel");
    });
    ULONG answer = 9;
    EXPECT_HRESULT(
        S_OK, Ui::ShowMessageBox(m_host, L"text", Qorv::UIX_MsgBox_IconWarning, {L"db.btn.cancel"}, answer, owner));
    EXPECT_EQ(owner, owner_of_box) << "a hidden window, which nothing else would choose";
    DestroyWindow(owner);
}

TEST_F(MessageBoxTest, BelongsToNoWindowThatIsDisabled) {
    const HWND window =
        CreateWindowW(L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    SetActiveWindow(window);
    EXPECT_EQ(window, Ui::ModalOwner(m_host));
    EnableWindow(window, FALSE);
    EXPECT_EQ(window, GetActiveWindow());
    EXPECT_EQ(nullptr, Ui::ModalOwner(m_host));
    DestroyWindow(window);
}

TEST_F(MessageBoxTest, ABoxThatCannotBeShownIsNoAnswer) {
    const auto host = Qorv::Create<Tests::OddHost>(m_host);
    host->has_no_services = true;
    ULONG answer = 0;
    EXPECT_HRESULT(E_NOTIMPL,
                   Ui::ShowMessageBox(host, L"text", Qorv::UIX_MsgBox_IconWarning, {L"db.btn.cancel"}, answer));
}

TEST_F(MessageBoxTest, IsShownOnTheMainThreadForAWorker) {
    DWORD shown_by = 0;
    const Tests::OnceInUse press([&](HWND window) {
        shown_by = GetWindowThreadProcessId(window, nullptr);
        return DevHost::PressButton(window, L"Choose user");
    });
    ULONG answer = 9;
    HRESULT result = E_UNEXPECTED;
    const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread worker([&] {
        result = AskForUser(answer);
        SetEvent(done);
    });
    EXPECT_TRUE(m_host->MainThread().WaitAndPump(done, 20000));
    worker.join();
    CloseHandle(done);
    EXPECT_HRESULT(S_OK, result);
    EXPECT_EQ(0U, answer);
    EXPECT_EQ(GetCurrentThreadId(), shown_by);
}

} // namespace
