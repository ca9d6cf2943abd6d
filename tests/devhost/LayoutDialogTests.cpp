// Dialogs and message boxes of the UI service in real windows, used by messages.

#include "DialogTest.h"
#include "host/MainInstance.h"
#include "support/TemporaryFolder.h"
#include "uix/ControlName.h"

#include <algorithm>
#include <thread>

namespace Tests {
namespace {

using Qorv::ComPtr;

class Monitor final : public Qorv::CoClass<Monitor, Qorv::IUIX_EventLoopMonitor> {
public:
    HRESULT STDMETHODCALLTYPE OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept override {
        UINT message = 0;
        io_event->get_Message(&message);
        if (message != WM_KEYDOWN)
            return S_OK;
        ++seen_keys;
        io_event->put_Handled(handles_keys ? VARIANT_TRUE : VARIANT_FALSE);
        return S_OK;
    }
    int seen_keys = 0;
    bool handles_keys = false;
};

class LayoutDialogTest : public DialogTest {
protected:
    static constexpr char buttons[] =
        "<label id=\"lb\" x=\"8\" y=\"8\" width=\"100\" height=\"20\" text=\"&amp;Label\"/>"
        "<button id=\"btn.other\" x=\"8\" y=\"8\" width=\"90\" height=\"24\" fixed=\"true\" text=\"Other\"/>"
        "<button id=\"btn.ok\" x=\"108\" y=\"8\" width=\"90\" height=\"24\" fixed=\"true\" text=\"OK\"/>";
};

TEST_F(LayoutDialogTest, TellsItsSinkOfItsWholeLife) {
    ASSERT_EQ(Create(buttons), S_OK);
    m_sink->on_event = [this](const ItemEvent&) { m_sink->dialog->EndModal(7, nullptr); };
    const OnceInUse press([](HWND i_window) { return DevHost::PressButton(i_window, L"Other"); });
    EXPECT_EQ(Run(), 7);
    EXPECT_FALSE(IsWindowVisible(m_sink->Window()));
    Destroy();
    const std::vector<std::wstring> expected = {L"attach", L"init", L"click btn.other", L"destroy", L"detach"};
    EXPECT_EQ(m_sink->events, expected);
}

TEST_F(LayoutDialogTest, EndsByItsKeysAndItsCloseBox) {
    const struct {
        const char* name;
        std::function<bool(HWND)> action;
        LONG result;
    } cases[] = {
        {"Esc", [](HWND) { return Press(VK_ESCAPE); }, closed},
        {"close box", [](HWND i_window) { return DevHost::CloseByBox(i_window, {}); }, closed},
        {"Enter presses the button that has the focus", [](HWND) { return Press(VK_RETURN); }, 10},
        {"the default one when none has it",
         [](HWND i_window) { return SetFocus(nullptr), PostMessageW(i_window, WM_KEYDOWN, VK_RETURN, 1); }, 20},
        {"or the one that Tab leads to", [](HWND) { return Press(VK_TAB) && Press(VK_RETURN); }, 20},
        {"the window goes", [](HWND i_window) { return DestroyWindow(i_window); }, closed},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(Create(buttons), S_OK);
        m_sink->on_event = [this](const ItemEvent& i_event) {
            m_sink->dialog->EndModal(i_event.item == L"btn.ok" ? 20 : 10, nullptr);
        };
        const OnceInUse act(row.action);
        const ComPtr<Qorv::IUIX_Obj> dialog = m_sink->dialog;
        EXPECT_EQ(Run(), row.result);
        dialog->Destroy();
        EXPECT_EQ(m_sink->events.back(), L"detach");
    }
}

TEST_F(LayoutDialogTest, DisablesItsOwnerUntilItGoes) {
    const HWND owner = CreateWindowW(L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 400, 300, nullptr,
                                     nullptr, nullptr, nullptr);
    ASSERT_EQ(Create(buttons, owner), S_OK);
    bool was_disabled = false;
    const OnceInUse close([&](HWND i_window) {
        was_disabled = IsWindowEnabled(owner) == FALSE && GetWindow(i_window, GW_OWNER) == owner;
        return DevHost::CloseByBox(i_window, {});
    });
    EXPECT_EQ(Run(), closed);
    EXPECT_TRUE(was_disabled);
    EXPECT_TRUE(IsWindowEnabled(owner));
    Destroy();
    // An owner that was already disabled stays disabled: whoever did that enables it.
    EnableWindow(owner, FALSE);
    ASSERT_EQ(Create(buttons, owner), S_OK);
    m_sink->on_init = [this] { return m_sink->dialog->EndModal(3, nullptr); };
    EXPECT_EQ(Run(), 3);
    EXPECT_FALSE(IsWindowEnabled(owner));
    Destroy();
    // Destroying an owner destroys its dialogs.
    EnableWindow(owner, TRUE);
    m_sink->on_init = nullptr;
    ASSERT_EQ(Create(buttons, owner), S_OK);
    const OnceInUse destroy([&](HWND) { return DestroyWindow(owner); });
    EXPECT_EQ(Run(), closed);
    EXPECT_EQ(m_sink->events.back(), L"detach");
}

TEST_F(LayoutDialogTest, MayBeEndedAndDestroyedInAnyEvent) {
    ASSERT_EQ(Create(buttons), S_OK);
    m_sink->on_init = [this] {
        PostMessageW(m_sink->Window(), WM_KEYDOWN, VK_RETURN, 1);
        return S_OK;
    };
    m_sink->on_event = [this](const ItemEvent&) {
        const ComPtr<Qorv::IUIX_Obj> dialog = m_sink->dialog;
        dialog->EndModal(5, nullptr);
        dialog->Destroy();
    };
    LONG result = closed;
    EXPECT_EQ(m_sink->dialog.Get()->DoModal(Qorv::UIX_ObjModal_AppModal, &result), S_OK);
    EXPECT_EQ(result, 5);
    EXPECT_EQ(m_sink->events.back(), L"detach");
    // DoModal returns OnInit's failure, and shows nothing.
    m_sink->on_init = [] { return E_ACCESSDENIED; };
    ASSERT_EQ(Create(buttons), S_OK);
    EXPECT_EQ(m_sink->dialog->DoModal(Qorv::UIX_ObjModal_AppModal, &result), E_ACCESSDENIED);
    Destroy();
    // So does CreateObj with OnAttach's.
    m_sink->attach_result = E_OUTOFMEMORY;
    EXPECT_EQ(Create(buttons), E_OUTOFMEMORY);
    m_sink->dialog.Reset();
}

TEST_F(LayoutDialogTest, PassesTheEndOfTheThreadOn) {
    ASSERT_EQ(Create(buttons), S_OK);
    PostQuitMessage(42);
    EXPECT_EQ(Run(), closed);
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 42u);
    Destroy();
}

TEST_F(LayoutDialogTest, ShowsItsMessagesToMonitorsFirst) {
    const auto monitor = Qorv::Create<Monitor>();
    ASSERT_EQ(m_ui->AddEventLoopMonitor(monitor), S_OK);
    monitor->handles_keys = true;
    ASSERT_EQ(Create(buttons), S_OK);
    int round = 0;
    const OnceInUse press([&](HWND) {
        monitor->handles_keys = ++round < 3; // The third Esc gets through.
        return Press(VK_ESCAPE) && round == 3;
    });
    EXPECT_EQ(Run(), closed);
    EXPECT_EQ(monitor->seen_keys, 3);
    EXPECT_EQ(m_ui->RemoveEventLoopMonitor(monitor), S_OK);
    EXPECT_EQ(m_ui->RemoveEventLoopMonitor(monitor), E_INVALIDARG);
    const OnceInUse close([&](HWND) { return Press(VK_ESCAPE); });
    EXPECT_EQ(Run(), closed);
    EXPECT_EQ(monitor->seen_keys, 3);
    Destroy();
}

TEST_F(LayoutDialogTest, FollowsItsSizeAndScrollsOnASmallScreen) {
    ASSERT_EQ(Create({}), S_OK);
    const OnceInUse resize([&](HWND i_window) {
        SetWindowPos(i_window, nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
        return DevHost::CloseByBox(i_window, {});
    });
    EXPECT_EQ(Run(), closed);
    EXPECT_NE(std::ranges::find(m_sink->events, L"size"), m_sink->events.end());
    Destroy();
    ASSERT_EQ(Create(buttons, nullptr, "8000"), S_OK);
    const OnceInUse scroll([&](HWND i_window) {
        RECT client{};
        EXPECT_EQ(m_sink->dialog->get_ClientRect(&client), S_OK);
        EXPECT_LT(client.bottom, 8000);
        EXPECT_GE(client.right, 300) << "the scroll bar took the items' room";
        const auto is_seen = [&] {
            RECT place{};
            GetWindowRect(DevHost::FindControl(i_window, L"btn.ok"), &place);
            MapWindowPoints(nullptr, i_window, reinterpret_cast<POINT*>(&place), 2);
            return place.top > 0 && place.bottom <= client.bottom;
        };
        SendMessageW(i_window, WM_VSCROLL, SB_BOTTOM, 0);
        EXPECT_TRUE(is_seen());
        SendMessageW(i_window, WM_VSCROLL, SB_TOP, 0);
        EXPECT_FALSE(is_seen());
        PressAndPump(VK_TAB);
        EXPECT_TRUE(is_seen()) << "where the keyboard is can be seen";
        return DevHost::CloseByBox(i_window, {});
    });
    EXPECT_EQ(Run(), closed);
    Destroy();
}

TEST_F(LayoutDialogTest, RefusesBadArguments) {
    EXPECT_EQ(Create("<gauge id=\"g\" x=\"0\" y=\"0\" width=\"1\" height=\"1\"/>"), E_INVALIDARG);
    EXPECT_TRUE(m_sink->events.empty());
    Qorv::UIX_CreateObjParameters parameters;
    EXPECT_EQ(m_ui->CreateObj(&parameters, nullptr), E_INVALIDARG);
    EXPECT_EQ(m_ui->CreateObj(nullptr, nullptr), E_INVALIDARG);
    ULONG answer = 0;
    const Qorv::UIX_MsgBoxParameters no_buttons;
    EXPECT_EQ(m_ui->ShowMsgBox(&no_buttons, &answer), E_INVALIDARG);
    ASSERT_EQ(Create(buttons), S_OK);
    EXPECT_EQ(m_sink->dialog->DoModal(Qorv::UIX_ObjModal_AppModal, nullptr), E_POINTER);
    LONG result = 0;
    EXPECT_EQ(m_sink->dialog->DoModal(0, &result), E_INVALIDARG);
    const ComPtr<Qorv::IUIX_Obj> dialog = m_sink->dialog;
    Destroy();
    EXPECT_EQ(dialog->DoModal(Qorv::UIX_ObjModal_AppModal, &result), E_UNEXPECTED);
}

TEST_F(LayoutDialogTest, ServesTheMainThreadWhileADialogRuns) {
    class Callback final : public Qorv::CoClass<Callback, Qorv::IQorv_ThreadSafeCallback> {
    public:
        explicit Callback(std::function<HRESULT()> i_call) : m_call(std::move(i_call)) {}
        HRESULT STDMETHODCALLTYPE OnExecute() noexcept override { return m_call(); }

    private:
        std::function<HRESULT()> m_call;
    };
    const TemporaryFolder profile;
    const auto host = Qorv::Create<DevHost::MainInstance>(profile.Path());
    ASSERT_EQ(Create(buttons), S_OK);
    std::thread worker;
    m_sink->on_init = [&] {
        worker = std::thread([&] {
            const auto callback = Qorv::Create<Callback>([this] { return m_sink->dialog->EndModal(9, nullptr); });
            EXPECT_EQ(host->ExecuteOnMainThread(callback, 10'000), S_OK);
        });
        return S_OK;
    };
    EXPECT_EQ(Run(), 9);
    worker.join();
    Destroy();
    host->Close();
}

TEST_F(LayoutDialogTest, MessageBoxAnswersWithTheButton) {
    const wchar_t* const captions[] = {L"First", L"&Second", L"Third"};
    const struct {
        const char* name;
        std::function<bool(HWND)> action;
        ULONG answer;
    } cases[] = {
        {"Enter", [](HWND) { return Press(VK_RETURN); }, 0},
        {"press", [](HWND i_window) { return DevHost::PressButton(i_window, L"Second"); }, 1},
        {"Esc", [](HWND) { return Press(VK_ESCAPE); }, 2},
        {"close box", [](HWND i_window) { return DevHost::CloseByBox(i_window, {}); }, 2},
        {"Tab, Enter", [](HWND) { return Press(VK_TAB) && Press(VK_RETURN); }, 1},
    };
    for (const auto& row : cases) {
        Qorv::UIX_MsgBoxParameters parameters;
        parameters.title = L"Title";
        parameters.text = L"Text";
        parameters.icon = Qorv::UIX_MsgBox_IconWarning;
        parameters.buttons = captions;
        parameters.button_count = 3;
        ULONG answer = 99;
        const OnceInUse act(row.action);
        EXPECT_EQ(m_ui->ShowMsgBox(&parameters, &answer), S_OK);
        EXPECT_EQ(answer, row.answer) << row.name;
    }
}

} // namespace
} // namespace Tests
