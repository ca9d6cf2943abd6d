// The development host's browser over real connections, and scripts that use windows.

#include "BrowserHost.h"
#include "base/Failure.h"
#include "browser/BrowserRegistration.h"
#include "script/WindowScript.h"
#include "script/WindowSteps.h"
#include "support/DevService.h"
#include "support/LiveObjectsTest.h"
#include "support/TemporaryFolder.h"
#include "uix/WindowText.h"

#include <wininet.h>

#include <algorithm>
#include <optional>

namespace Tests {
namespace {

using Qorv::ComPtr;

const std::wstring site = L"https://www.dropbox.com";
const std::wstring receiver = site + L"/1/oauth2/redirect_receiver";
const std::wstring authorize = site + L"/oauth2/authorize?response_type=token&client_id=app&redirect_uri=" + receiver;

class BrowserTest : public LiveObjectsTest {
protected:
    BrowserTest() {
        OleInitialize(nullptr);
        InternetSetOptionW(nullptr, INTERNET_OPTION_END_BROWSER_SESSION, nullptr, 0); // No cookies from earlier tests.
        Service::ClearFaults();
        m_registration.emplace();
        m_window = CreateWindowW(L"STATIC", L"Container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 460, 620, nullptr,
                                 nullptr, nullptr, nullptr);
        m_host = Qorv::Create<BrowserHost>();
        EXPECT_EQ(m_host->Open(m_window), S_OK);
    }

    void TearDown() override {
        if (m_host != nullptr)
            m_host->Close();
        m_host.Reset();
        EXPECT_EQ(GetWindow(m_window, GW_CHILD), nullptr) << "a window is left over";
        DestroyWindow(m_window);
        m_registration.reset();
        Service::ClearFaults();
        OleUninitialize();
        LiveObjectsTest::TearDown();
    }

    /// Runs messages as a host's loop does, keys through the browser first, until the condition holds.
    template <typename Condition>
    void RunUntil(Condition i_condition) {
        const ULONGLONG begin = GetTickCount64();
        while (!i_condition()) {
            ASSERT_LT(GetTickCount64() - begin, 20'000u) << "it did not happen in time";
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
            for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
                if (message.message == WM_KEYDOWN && Translate(message))
                    continue;
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }
    bool Translate(MSG& io_message) {
        if (m_host == nullptr || m_host->browser == nullptr)
            return false;
        ComPtr<IOleInPlaceActiveObject> active;
        m_host->browser->QueryInterface(IID_IOleInPlaceActiveObject, reinterpret_cast<void**>(&active));
        return active->TranslateAccelerator(&io_message) == S_OK;
    }
    void RunUntilShown(const std::wstring& i_url) {
        RunUntil([&] { return DevHost::WaitForPage(m_window, i_url); });
    }
    bool Shows(const std::wstring& i_text) { return DevHost::WaitForText(m_window, i_text); }
    void Press(WPARAM i_key) { PostMessageW(GetFocus(), WM_KEYDOWN, i_key, 1); }

    std::optional<DevHost::BrowserRegistration> m_registration;
    HWND m_window = nullptr;
    ComPtr<BrowserHost> m_host;
};

TEST_F(BrowserTest, SignsInThroughFormsCookiesAndRedirects) {
    m_host->Navigate(authorize);
    RunUntilShown(authorize);
    EXPECT_TRUE(DevHost::FillField(m_window, L"email ada.example@example.com"));
    EXPECT_TRUE(DevHost::FillField(m_window, L"password wrong"));
    Press(VK_RETURN);
    RunUntil([&] { return Shows(L"Wrong email"); });
    EXPECT_TRUE(DevHost::FillField(m_window, L"password sample"));
    Press(VK_TAB);
    RunUntil([&] { return DevHost::WindowText(GetFocus()) == L"Sign in"; });
    Press(VK_RETURN);
    RunUntil([&] { return Shows(L"Allow access"); });
    EXPECT_TRUE(DevHost::PressButton(m_window, L"Allow"));
    RunUntilShown(receiver + L"#");
    const std::wstring location = m_host->Location();
    EXPECT_NE(location.find(L"access_token="), std::wstring::npos);
    EXPECT_NE(location.find(L"&account_id=dbid%3A"), std::wstring::npos) << "the fragment was changed";
    ASSERT_GE(m_host->events.size(), 3u);
    EXPECT_EQ(*(m_host->events.end() - 3), L"before " + authorize);
    EXPECT_EQ(*(m_host->events.end() - 2), L"complete " + location);
    EXPECT_EQ(m_host->events.back(), L"document " + location);
}

TEST_F(BrowserTest, TellsOfEachAddressAskedForAndOfTheLastOne) {
    m_host->Navigate(site + L"/logout#kept");
    RunUntilShown(site + L"/login");
    const std::vector<std::wstring> expected = {L"before " + site + L"/logout#kept",
                                                L"complete " + site + L"/login#kept",
                                                L"document " + site + L"/login#kept"};
    EXPECT_EQ(m_host->events, expected);
}

TEST_F(BrowserTest, MayBeStoppedAndLedElsewhereInItsEvents) {
    m_host->on_complete = [&](const std::wstring& i_url) {
        if (i_url != site + L"/login")
            return;
        EXPECT_EQ(m_host->browser->Stop(), S_OK);
        m_host->Navigate(site + L"/first");
        m_host->Navigate(site + L"/");
    };
    m_host->Navigate(site + L"/logout");
    RunUntilShown(site + L"/");
    const std::vector<std::wstring> expected = {L"before " + site + L"/logout", L"complete " + site + L"/login",
                                                L"before " + site + L"/", L"complete " + site + L"/",
                                                L"document " + site + L"/"};
    EXPECT_EQ(m_host->events, expected);
    // A refused navigation keeps the page; so does one that is stopped while loading.
    m_host->events.clear();
    m_host->on_before = [](const std::wstring&) { return true; };
    m_host->Navigate(site + L"/login");
    RunUntil([&] { return !m_host->events.empty(); });
    m_host->on_before = [&](const std::wstring& i_url) {
        if (i_url == site + L"/login")
            m_host->Navigate(site + L"/login?2");
        return false;
    };
    m_host->Navigate(site + L"/login");
    RunUntil([&] { return m_host->events.size() >= 2; });
    m_host->on_before = nullptr;
    RunUntilShown(site + L"/login?2");
    EXPECT_EQ(std::ranges::count(m_host->events, L"complete " + site + L"/login"), 0);
    Service::AddFault(R"({"path": "slow", "delay_ms": 1500})");
    m_host->Navigate(site + L"/slow");
    RunUntil([&] { return m_host->events.back() == L"before " + site + L"/slow"; });
    m_host->browser->Stop();
    EXPECT_TRUE(DevHost::WaitForPage(m_window, site + L"/login?2"));
    m_host->Navigate(site + L"/");
    RunUntilShown(site + L"/");
    EXPECT_EQ(std::ranges::count(m_host->events, L"complete " + site + L"/slow"), 0);
}

TEST_F(BrowserTest, MayBeClosedInItsEvents) {
    const struct {
        const char* name;
        std::function<bool(const std::wstring&)> BrowserHost::*before;
        std::function<void(const std::wstring&)> BrowserHost::*after;
    } cases[] = {{"before", &BrowserHost::on_before, nullptr},
                 {"complete", nullptr, &BrowserHost::on_complete},
                 {"document", nullptr, &BrowserHost::on_document}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        const auto host = Qorv::Create<BrowserHost>();
        ASSERT_EQ(host->Open(m_window), S_OK);
        if (row.before != nullptr)
            (*host).*row.before = [&](const std::wstring&) { return host->Close(), false; };
        else
            (*host).*row.after = [&](const std::wstring&) { host->Close(); };
        host->Navigate(site + L"/");
        RunUntil([&] { return host->browser == nullptr; });
    }
    // And while a page is loading.
    Service::AddFault(R"({"path": "slow", "delay_ms": 500})");
    m_host->Navigate(site + L"/slow");
    RunUntil([&] { return !m_host->events.empty(); });
    m_host->Close();
    m_host.Reset();
}

TEST_F(BrowserTest, SaysWhyAPageDoesNotCome) {
    const struct {
        std::wstring url;
        const wchar_t* text;
        const wchar_t* last_event_but_one;
    } cases[] = {
        {L"http://127.0.0.1:9/", L"no connection", L"error"}, {L"https://www.dropbox.com/empty", L"503", L"complete"},
        {L"ftp://host/x", L"cannot be shown", L"error"},      {L"https://", L"cannot be shown", L"error"},
        {L"nonsense", L"cannot be shown", L"error"},
    };
    Service::AddFault(R"({"path": "empty", "status": 503, "body": ""})");
    for (const auto& row : cases) {
        m_host->events.clear();
        m_host->Navigate(row.url);
        RunUntil([&] { return m_host->events.size() == 3; });
        EXPECT_TRUE(Shows(row.text)) << row.url.c_str();
        EXPECT_EQ(m_host->events[1], row.last_event_but_one + (L" " + row.url));
    }
    // "Try again" asks for the same address.
    m_host->events.clear();
    Service::AddFault(R"({"path": "gone", "status": 503, "body": "", "times": 1})");
    m_host->Navigate(site + L"/gone");
    RunUntil([&] { return Shows(L"503"); });
    EXPECT_TRUE(DevHost::PressButton(m_window, L"Try again"));
    RunUntil([&] { return Shows(L"404"); });
}

TEST_F(BrowserTest, AnswersAsTheSystemsControlDoes) {
    ComPtr<IUnknown> other;
    for (const IID* const id : {&IID_IWebBrowser, &IID_IWebBrowserApp, &IID_IWebBrowser2, &IID_IOleObject,
                                &IID_IOleWindow, &IID_IOleInPlaceObject, &IID_IOleInPlaceActiveObject,
                                &IID_IPersistStorage, &IID_IConnectionPointContainer, &IID_IDispatch})
        EXPECT_EQ(m_host->browser->QueryInterface(*id, reinterpret_cast<void**>(&other)), S_OK);
    ComPtr<IDispatch> document;
    EXPECT_EQ(m_host->browser->get_Document(&document), E_NOTIMPL);
    VARIANT nothing{};
    EXPECT_EQ(m_host->browser->Navigate2(&nothing, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(m_host->browser->Navigate2(nullptr, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(m_host->browser->put_Silent(VARIANT_TRUE), S_OK);
    VARIANT_BOOL is_silent = VARIANT_FALSE;
    EXPECT_EQ(m_host->browser->get_Silent(&is_silent), S_OK);
    EXPECT_EQ(is_silent, VARIANT_TRUE);
    m_host->Navigate(L"about:blank");
    RunUntilShown(L"about:blank");
    EXPECT_EQ(m_host->Location(), L"about:blank");
}

class WindowScriptTest : public testing::Test {
protected:
    std::filesystem::path Write(const std::string& i_steps) {
        WriteBytes(m_folder.Path() / "steps.txt", i_steps);
        return m_folder.Path() / "steps.txt";
    }
    /// Runs messages until the window is closed.
    static void RunUntilClosed(HWND i_window) {
        MSG message;
        while (IsWindow(i_window) && GetMessageW(&message, nullptr, 0, 0) > 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    static HWND OpenWindow() {
        return CreateWindowW(L"STATIC", L"A window", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                             nullptr, nullptr);
    }
    TemporaryFolder m_folder;
};

TEST_F(WindowScriptTest, DoesItsSteps) {
    OleInitialize(nullptr);
    const std::wstring picture = (m_folder.Path() / "window.png").wstring();
    DevHost::WindowScript script(
        Write("# a note\n\nwindow A win\n  picture " + (m_folder.Path() / "window.png").string() + "  \r\nclose"));
    RunUntilClosed(OpenWindow());
    EXPECT_TRUE(script.IsDone());
    EXPECT_FALSE(script.HasFailed());
    EXPECT_EQ(ReadBytes(picture).substr(1, 3), "PNG");
    OleUninitialize();
}

TEST_F(WindowScriptTest, ClosesEverythingWhenAStepIsInVain) {
    for (const char* const steps : {"text no such text", "press No such button", "fill no.such text", "key NoSuchKey",
                                    "picture Z:\\no\\such\\folder\\window.png"}) {
        DevHost::WindowScript script(Write(steps), 100);
        RunUntilClosed(OpenWindow());
        EXPECT_TRUE(script.HasFailed()) << steps;
    }
}

TEST_F(WindowScriptTest, AStepThatIsLeftOverIsAFailure) {
    DevHost::WindowScript done(Write("# nothing to do"));
    EXPECT_TRUE(done.End());
    DevHost::WindowScript script(Write("text no such text"));
    EXPECT_FALSE(script.End());
    EXPECT_TRUE(script.HasFailed());
}

TEST_F(WindowScriptTest, RefusesWhatIsNoStep) {
    for (const char* const steps : {"dance", "press", "close now", "text a\nprss b"})
        EXPECT_THROW(DevHost::WindowScript script(Write(steps)), DevHost::Failure) << steps;
    EXPECT_THROW(DevHost::WindowScript script(m_folder.Path() / "missing.txt"), DevHost::Failure);
}

} // namespace
} // namespace Tests
