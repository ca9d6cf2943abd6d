// What dialogs do on workers, and how they abandon it.

#include "afs/AfsTest.h"
#include "core/host/Cancellation.h"
#include "support/OddHost.h"
#include "ui/HeldFileSystem.h"
#include "ui/dialog/DialogQuestions.h"
#include "ui/dialog/FailureText.h"
#include "ui/dialog/RunningCommand.h"
#include "ui/dialog/WatchTimer.h"
#include "ui/folder/FolderConnection.h"
#include "ui/folder/WindowTask.h"

#include <future>

namespace {

using Qorv::ComPtr;

constexpr DWORD patience = 20'000; // Milliseconds.
constexpr UINT message_of_test = WM_APP + 7;

/// A window that only gets messages.
class BackgroundTest : public Tests::AfsTest {
protected:
    BackgroundTest() : m_held(Qorv::Create<Tests::HeldFileSystem>(m_file_system)) {
        Tests::WriteBytes(Tests::Service::LocalPath(L"/a.txt"), "a");
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountMessages));
        dispatched = 0;
    }
    ~BackgroundTest() override {
        m_reaper.reset();
        m_held.Reset();
        DestroyWindow(m_window);
    }

    std::unique_ptr<Ui::FolderConnection> Connect() {
        return std::make_unique<Ui::FolderConnection>(m_host, m_held, m_window, message_of_test, *m_reaper);
    }

    /// The first parameter of the next message to the window, while the UI thread runs; 0 when none comes.
    WPARAM NextMessage(DWORD i_patience = patience) {
        MSG message{};
        for (const ULONGLONG end = GetTickCount64() + i_patience; GetTickCount64() < end; Sleep(1))
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                if (message.hwnd == m_window && message.message == message_of_test)
                    return message.wParam;
                DispatchMessageW(&message);
            }
        return 0;
    }

    /// The messages to the window that were dispatched while something was waited for.
    static LRESULT CALLBACK CountMessages(HWND i_window, UINT i_message, WPARAM i_w_param, LPARAM i_l_param) {
        dispatched += i_message == message_of_test ? 1 : 0;
        return DefWindowProcW(i_window, i_message, i_w_param, i_l_param);
    }

    void WaitForHeldCall() {
        for (const ULONGLONG end = GetTickCount64() + patience; !m_host->MainThread().HasPendingCalls(); Sleep(1))
            ASSERT_LT(GetTickCount64(), end) << "no completion";
    }

    const HWND m_window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    std::unique_ptr<Ui::Reaper> m_reaper = std::make_unique<Ui::Reaper>();
    ComPtr<Tests::HeldFileSystem> m_held;
    static inline int dispatched = 0;
};

TEST_F(BackgroundTest, ALoadIsToldOfOnce) {
    const auto connection = Connect();
    EXPECT_HRESULT(S_OK, connection->Show(m_root));
    EXPECT_TRUE(connection->IsLoading());
    const WPARAM load = NextMessage();
    EXPECT_FALSE(connection->TakeResult(load + 1)) << "another load's";
    EXPECT_EQ(S_OK, connection->TakeResult(load));
    EXPECT_FALSE(connection->TakeResult(load)) << "taken already";
    EXPECT_FALSE(connection->IsLoading());
    EXPECT_EQ(1U, connection->GetItems().size());

    EXPECT_HRESULT(S_FALSE, connection->Show(NameOf(L""))) << "the same folder";
    EXPECT_FALSE(connection->IsLoading());
    EXPECT_HRESULT(S_OK, connection->Show(NameOf(L"/gone")));
    EXPECT_EQ(E_INVALIDARG, connection->TakeResult(NextMessage()));
    EXPECT_HRESULT(S_OK, connection->Reload());
    EXPECT_EQ(E_INVALIDARG, connection->TakeResult(NextMessage()));
}

TEST_F(BackgroundTest, PartsFromALoadAThousandTimesWithTheCompletionHeld) {
    m_held->KeepListing(m_root);
    // Wine 10's server shares at most 512 objects with its programs, two of them for each thread that waits for
    // messages. With more it loses sight of the desktop and the keyboard, in all later programs too, until it is
    // restarted.
    constexpr int waiting_at_once = 50;
    for (int i = 0; i < 1000 && !HasFatalFailure(); ++i) {
        if (i % waiting_at_once == 0)
            m_reaper = std::make_unique<Ui::Reaper>(); // The old one waits, and serves the workers' calls.
        const auto connection = Connect();
        ASSERT_HRESULT_SUCCEEDED(connection->Show(m_root));
        if (i % 4 != 0)
            WaitForHeldCall(); // The worker waits for this thread, which lets go of the connection and does not wait.
    }
    m_reaper.reset();
    EXPECT_EQ(0U, NextMessage(1)) << "a load was told of after its end";
    EXPECT_EQ(0, dispatched);
}

TEST_F(BackgroundTest, AHangingListingHoldsNobodyUp) {
    std::promise<void> hangs;
    std::shared_future<void> goes_on(hangs.get_future());
    m_held->before_next = [goes_on] { goes_on.wait(); };
    auto connection = Connect();
    EXPECT_HRESULT(S_OK, connection->Show(m_root));
    while (Calls("files/list_folder") == 0)
        Sleep(1);
    connection.reset(); // Waiting here would never end.
    hangs.set_value();
}

TEST_F(BackgroundTest, ATaskIsToldOfWithItsReason) {
    const auto gone = NameOf(L"/gone");
    const auto remove = [&](Qorv::IQorv_CancelFlag*) {
        EXPECT_NE(GetCurrentThreadId(), GetWindowThreadProcessId(m_window, nullptr));
        return m_file_system->CreateFolder(m_root, nullptr, nullptr); // The root cannot be made.
    };
    const Ui::WindowTask task(m_host, m_window, message_of_test, 5, remove);
    EXPECT_EQ(5U, NextMessage());
    EXPECT_HRESULT(E_FAIL, task.GetResult());
    EXPECT_EQ(400u, task.GetFailureReason().http_status);
    EXPECT_TRUE(task.GetFailureReason().words.starts_with(L"HTTP 400: ")) << ToUtf8(task.GetFailureReason().words);
}

TEST_F(BackgroundTest, AnAbandonedTaskIsSilentAndNoticesIt) {
    std::promise<bool> noticed;
    const auto wait = [&](Qorv::IQorv_CancelFlag* i_stop_flag) {
        const ULONGLONG end = GetTickCount64() + patience;
        while (!IsCanceled(i_stop_flag) && GetTickCount64() < end)
            Sleep(1);
        noticed.set_value(IsCanceled(i_stop_flag));
        return S_OK;
    };
    auto task = std::make_shared<Ui::WindowTask>(m_host, m_window, message_of_test, 1, wait);
    task->Abandon();
    m_reaper->Take(std::move(task));
    EXPECT_TRUE(noticed.get_future().get());
    m_reaper.reset();
    EXPECT_EQ(0U, NextMessage(1));
    EXPECT_EQ(0, dispatched);
}

TEST_F(BackgroundTest, AnEndThatNoMessageTellsOfIsFound) {
    const auto host = Qorv::Create<Tests::OddHost>(m_host);
    const auto wait_for = [this](const auto& i_take) {
        for (const ULONGLONG end = GetTickCount64() + patience; GetTickCount64() < end; NextMessage(1))
            if (const auto result = i_take())
                return *result;
        throw std::runtime_error("the end was never found");
    };
    const auto no_window = reinterpret_cast<HWND>(~std::uintptr_t{0xFF}); // Posting fails, as into a full queue.
    Ui::FolderConnection unposted(host, m_held, no_window, message_of_test, *m_reaper);
    EXPECT_HRESULT(S_OK, unposted.Show(m_root));
    EXPECT_EQ(S_OK, wait_for([&] { return unposted.TakeUntoldResult(); }));
    EXPECT_FALSE(unposted.IsLoading());
    EXPECT_EQ(1U, unposted.GetItems().size());
    EXPECT_FALSE(unposted.TakeUntoldResult()) << "taken already";

    Ui::FolderConnection undelivered(host, m_held, m_window, message_of_test, *m_reaper);
    EXPECT_HRESULT(S_OK, undelivered.Show(m_root));
    EXPECT_EQ(S_OK, undelivered.TakeResult(NextMessage()));
    host->is_deaf_to_workers = true;
    EXPECT_HRESULT(S_OK, undelivered.Reload());
    EXPECT_EQ(E_UNEXPECTED, wait_for([&] { return undelivered.TakeUntoldResult(); }));
    EXPECT_FALSE(undelivered.IsLoading());

    Ui::RunningCommand command(host, *m_reaper);
    std::promise<void> goes_on;
    command.Begin(m_window,
                  [&](Qorv::IQorv_CancelFlag*) {
                      goes_on.get_future().wait();
                      return E_ACCESSDENIED;
                  },
                  {});
    EXPECT_FALSE(command.TakeUntoldEnd()) << "it still runs";
    EXPECT_FALSE(command.TakeEnd(7)) << "another one's";
    goes_on.set_value();
    EXPECT_EQ(E_ACCESSDENIED, wait_for([&] { return command.TakeUntoldEnd(); }).failure.code);
    EXPECT_FALSE(command.IsRunning());
}

TEST_F(BackgroundTest, AnAbandonedCommandIsStoppedAtOnceAndNothingFollows) {
    Ui::Reaper reaper;
    Ui::RunningCommand command(m_host, reaper);
    std::promise<ComPtr<Qorv::IQorv_CancelFlag>> flag;
    std::promise<void> goes_on;
    const auto work = [&](Qorv::IQorv_CancelFlag* i_stop_flag) {
        flag.set_value(i_stop_flag);
        goes_on.get_future().wait();
        return S_OK;
    };
    command.Begin(m_window, work, [](const Ui::Failure&) { ADD_FAILURE() << "nobody is there any more"; });
    const auto stop_flag = flag.get_future().get();
    EXPECT_FALSE(IsCanceled(stop_flag));
    command.Abandon();
    EXPECT_TRUE(IsCanceled(stop_flag));
    EXPECT_FALSE(command.IsRunning());
    goes_on.set_value();
    EXPECT_EQ(0U, NextMessage(100));
}

TEST_F(BackgroundTest, ATimerCallsUntilItIsDestroyed) {
    const auto next_tick = [] {
        MSG message{};
        const ULONGLONG end = GetTickCount64() + patience;
        while (!PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE) && GetTickCount64() < end)
            Sleep(1);
        return message;
    };
    int calls = 0;
    auto timer = std::make_unique<Ui::WatchTimer>([&] { ++calls; });
    const MSG tick = next_tick();
    DispatchMessageW(&tick);
    EXPECT_EQ(1, calls);
    timer.reset();
    DispatchMessageW(&tick); // As if it had been in the queue all the time.
    EXPECT_EQ(1, calls);

    timer = std::make_unique<Ui::WatchTimer>([&] {
        timer.reset();
        ++calls;
    });
    const MSG last_tick = next_tick();
    DispatchMessageW(&last_tick);
    EXPECT_EQ(2, calls);
    EXPECT_EQ(nullptr, timer);
}

TEST_F(BackgroundTest, FailuresAreToldInWordsForAPerson) {
    const auto http = [](DWORD i_status, const wchar_t* i_summary = L"") {
        return Ui::Failure{E_FAIL, {L"HTTP " + std::to_wstring(i_status), i_status, i_summary}};
    };
    const Ui::Failure odd{E_FAIL, {L"odd words that mention HTTP 401 and a conflict\r\n"}};
    const struct {
        Ui::Failure failure;
        const wchar_t* text;
        bool is_sign_in;
    } cases[] = {
        {http(401, L"expired_access_token/"), L"db.fail.signIn", true},
        {http(409, L"path/not_found/.."), L"db.fail.notFound", false},
        {http(409, L"path/conflict/folder/.."), L"db.fail.exists", false},
        {http(429, L"too_many_requests/"), L"db.fail.tooMany", false},
        {http(503), L"db.fail.service", false},
        {http(413), L"db.fail.tooLarge", false},
        {http(409, L"payload_too_large/.."), L"db.fail.tooLarge", false},
        {{HRESULT_FROM_WIN32(12007), {L"GetLastError 12007: "}}, L"db.fail.offline", false},
        {{HRESULT_FROM_WIN32(12029)}, L"db.fail.connection", false},
        {{HRESULT_FROM_WIN32(12037)}, L"db.fail.certificate", false},
        {{HRESULT_FROM_WIN32(12045)}, L"db.fail.certificate", false},
        {http(407), L"db.fail.proxy", false},
        {http(403), L"db.fail.notAllowed", false},
        {http(409, L"path/no_write_permission/"), L"db.fail.notAllowed", false},
        {http(409, L"path/insufficient_space/"), L"db.fail.noSpace", false},
        {http(511), L"db.fail.page", false},
        {{E_FAIL, {L"words", 0, L"html_page"}}, L"db.fail.page", false},
        {{E_INVALIDARG}, L"db.fail.notFound", false},
        {odd, L"db.fail.other", false},
    };
    for (const auto& test : cases) {
        Qorv::Bstr words;
        ASSERT_HRESULT_SUCCEEDED(m_host->GetLocalStr(test.text, &words)) << ToUtf8(test.text);
        EXPECT_TRUE(Ui::FailureText(m_host, test.failure).starts_with(words.View()))
            << ToUtf8(Ui::FailureText(m_host, test.failure));
        EXPECT_EQ(test.is_sign_in, Ui::IsSignInNeeded(test.failure)) << ToUtf8(test.failure.reason.words);
    }
    EXPECT_TRUE(Ui::FailureText(m_host, odd).ends_with(L"\n(odd words that mention HTTP 401 and a conflict)"));
}

TEST_F(BackgroundTest, AnAnswerThatIsLostLeavesItOpenWhatWasDone) {
    for (const DWORD error : {12002, 12030, 12031, 12152})
        EXPECT_TRUE(Ui::MayHaveSucceeded({HRESULT_FROM_WIN32(error)})) << error;
    for (const DWORD error : {12007, 12029, 12045})
        EXPECT_FALSE(Ui::MayHaveSucceeded({HRESULT_FROM_WIN32(error)})) << "the request was never sent: " << error;
    for (const DWORD status : {409, 503})
        EXPECT_FALSE(Ui::MayHaveSucceeded({E_FAIL, {L"", status}})) << "the service answered: " << status;
}

TEST_F(BackgroundTest, WhatOthersSayIsToldShortAndInOneDirection) {
    const auto detail = [this](std::wstring i_words) {
        const std::wstring text = Ui::FailureText(m_host, {E_FAIL, {std::move(i_words)}});
        return text.substr(text.find(L'\n') + 1);
    };
    EXPECT_EQ(L"(one two three)", detail(L" one\r\n\ttwo\u0085\u2028three\x7f \x01"));
    EXPECT_EQ(L"(fdp.exe)", detail(L"\u202efdp\u2066.e\u200ex\u200fe\u061c"));
    EXPECT_EQ(L"(" + std::wstring(300, L'n') + L")", detail(std::wstring(300, L'n') + L"\r\n"));
    EXPECT_EQ(L"(" + std::wstring(299, L'n') + L"\u2026)", detail(std::wstring(5'000'000, L'n')));
    const std::wstring face = L"\xD83D\xDE00";
    EXPECT_EQ(L"(" + std::wstring(298, L'n') + L"\u2026)", detail(std::wstring(298, L'n') + face + face))
        << "no half of a character";
}

TEST_F(BackgroundTest, ABoxThatCannotBeShownAgreesToNothing) {
    const auto host = Qorv::Create<Tests::OddHost>(m_host);
    host->has_no_services = true;
    const Ui::DialogQuestions questions(host, m_window);
    EXPECT_FALSE(questions.AskToReplace(L"a.pdf"));
    Ui::FileRow row;
    row.title = L"a.pdf";
    EXPECT_FALSE(questions.AskToDelete({&row}));
    for (const DWORD status : {401, 500})
        EXPECT_EQ(Ui::FailureAnswer::give_up, questions.AskAfterLoadFailure(L"/", {E_FAIL, {L"", status}}));
}

TEST_F(BackgroundTest, WorkersHaveComInitialized) {
    HRESULT result = E_UNEXPECTED;
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    Ui::WorkerTask([&] { result = CoGetApartmentType(&type, &qualifier); }).Wait();
    EXPECT_HRESULT(S_OK, result);
    EXPECT_EQ(APTTYPE_MTA, type);
    EXPECT_NE(APTTYPEQUALIFIER_IMPLICIT_MTA, qualifier) << "only by the grace of another thread";
}

} // namespace
