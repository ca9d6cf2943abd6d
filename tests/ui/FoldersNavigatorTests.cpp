#include "afs/AfsTest.h"
#include "core/host/Cancellation.h"
#include "ui/HeldFileSystem.h"
#include "ui/folder/FoldersNavigator.h"

#include <future>
#include <set>

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_Name;

constexpr DWORD patience = 20'000; // Milliseconds.

class FoldersNavigatorTest : public Tests::AfsTest {
protected:
    FoldersNavigatorTest() {
        std::filesystem::create_directories(Tests::Service::LocalPath(L"/Docs/Inner"));
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Docs/a.txt"), "a");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Docs/b.txt"), "b");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/top.txt"), "top");
        m_held = Qorv::Create<Tests::HeldFileSystem>(m_file_system);
        m_navigator = MakeNavigator();
    }
    ~FoldersNavigatorTest() override {
        m_navigator.reset();
        m_held.Reset();
        CloseHandle(m_completed);
    }

    std::unique_ptr<FoldersNavigator> MakeNavigator() {
        return std::make_unique<FoldersNavigator>(m_host, m_held, [this](HRESULT i_result) {
            m_results.push_back(i_result);
            SetEvent(m_completed);
        });
    }

    /// Lets the UI thread run until a load is completed; its result.
    HRESULT Completed() {
        EXPECT_TRUE(m_host->MainThread().WaitAndPump(m_completed, patience)) << "no completion";
        return m_results.empty() ? E_UNEXPECTED : m_results.back();
    }
    void Show(IAFS_Name* i_name) {
        EXPECT_HRESULT(S_OK, m_navigator->SetFolder(i_name));
        EXPECT_HRESULT(S_OK, Completed());
    }
    /// Waits, with the UI thread standing still, until a worker has come to its completion.
    void WaitForHeldCompletion() {
        for (const ULONGLONG end = GetTickCount64() + patience; !m_host->MainThread().HasPendingCalls(); Sleep(1))
            ASSERT_LT(GetTickCount64(), end) << "no completion";
    }
    std::set<std::wstring> Listed() {
        std::set<std::wstring> texts;
        for (const auto& [name, item] : m_navigator->GetItems())
            texts.insert(TextOf(name, Qorv::AFS_Name2String_PathOnly));
        return texts;
    }
    ComPtr<IAFS_Name> ListedName(const std::wstring& i_path) {
        for (const auto& [name, item] : m_navigator->GetItems())
            if (TextOf(name, Qorv::AFS_Name2String_PathOnly) == i_path)
                return name;
        return nullptr;
    }

    const HANDLE m_completed = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::vector<HRESULT> m_results;
    ComPtr<Tests::HeldFileSystem> m_held;
    std::unique_ptr<FoldersNavigator> m_navigator;
};

TEST_F(FoldersNavigatorTest, LoadsAFolderOnce) {
    Show(m_root);
    EXPECT_EQ((std::set<std::wstring>{L"/Docs", L"/top.txt"}), Listed());
    EXPECT_EQ(nullptr, m_navigator->GetParentFolder());
    EXPECT_FALSE(m_navigator->IsRunning());

    const ComPtr<IAFS_Name> same_place = NameOf(L"");
    EXPECT_HRESULT(S_OK, m_navigator->SetFolder(same_place));
    EXPECT_FALSE(m_navigator->IsRunning());
    EXPECT_EQ(1U, Calls("files/list_folder"));
    EXPECT_EQ(1U, m_results.size());

    Tests::WriteBytes(Tests::Service::LocalPath(L"/new.txt"), "new");
    EXPECT_HRESULT(S_OK, m_navigator->Refresh());
    EXPECT_HRESULT(S_OK, Completed());
    EXPECT_EQ((std::set<std::wstring>{L"/Docs", L"/new.txt", L"/top.txt"}), Listed());
    EXPECT_HRESULT(E_INVALIDARG, m_navigator->SetFolder(Qorv::Create<Tests::ForeignName>()));
}

TEST_F(FoldersNavigatorTest, ShowsTheFolderOfAFile) {
    Show(NameOf(L"/Docs/a.txt"));
    EXPECT_EQ(Location(L"/Docs"), TextOf(m_navigator->GetFolder()));
    EXPECT_EQ(Location(L""), TextOf(m_navigator->GetParentFolder()));
    EXPECT_EQ((std::set<std::wstring>{L"/Docs/Inner", L"/Docs/a.txt", L"/Docs/b.txt"}), Listed());

    // The parent that a listed file brings along is its folder, not that folder's parent.
    Show(ListedName(L"/Docs/b.txt"));
    EXPECT_EQ(Location(L"/Docs"), TextOf(m_navigator->GetFolder()));
    EXPECT_EQ(Location(L""), TextOf(m_navigator->GetParentFolder()));
}

TEST_F(FoldersNavigatorTest, TakesTheParentOfAListedFolderFromTheListing) {
    Show(m_root);
    m_held->parent_lookups = 0;
    const ComPtr<IAFS_Name> docs = ListedName(L"/Docs");
    Show(docs);
    EXPECT_EQ(m_root.Get(), m_navigator->GetParentFolder()) << "the very object";
    EXPECT_EQ(0, m_held->parent_lookups);
    Show(NameOf(L"/Docs/Inner")); // Equal to a listed one, but not it.
    EXPECT_EQ(Location(L"/Docs"), TextOf(m_navigator->GetParentFolder()));
    EXPECT_EQ(1, m_held->parent_lookups);
}

TEST_F(FoldersNavigatorTest, WithoutAFolderThereIsNothingToLoad) {
    EXPECT_HRESULT(S_FALSE, m_navigator->Refresh());
    EXPECT_EQ(std::vector<HRESULT>{S_FALSE}, m_results);
    EXPECT_HRESULT(S_OK, m_navigator->SetFolder(nullptr));
    EXPECT_EQ((std::vector<HRESULT>{S_FALSE, S_FALSE}), m_results);
    EXPECT_FALSE(m_navigator->IsRunning());
}

TEST_F(FoldersNavigatorTest, RefusesASecondLoadAndFinishesTheFirst) {
    EXPECT_HRESULT(S_OK, m_navigator->SetFolder(m_root));
    WaitForHeldCompletion(); // Everything is loaded; nothing may be lost now.
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_FAIL, m_navigator->Refresh());
    EXPECT_TRUE(log.Has("Expression: \"!m_is_running.exchange(true)\" caused returning"));
    EXPECT_HRESULT(E_FAIL, m_navigator->SetFolder(NameOf(L"/Docs")));
    EXPECT_HRESULT(S_OK, Completed());
    EXPECT_EQ(m_root.Get(), m_navigator->GetFolder());
    EXPECT_EQ((std::set<std::wstring>{L"/Docs", L"/top.txt"}), Listed());
    EXPECT_EQ(1U, m_results.size());
}

TEST_F(FoldersNavigatorTest, ADeliveredLoadIsInNobodysWay) {
    Show(m_root);
    for (int i = 0; i < 200; ++i) {
        ASSERT_HRESULT_SUCCEEDED(m_navigator->Refresh()) << "round " << i;
        ASSERT_HRESULT_SUCCEEDED(Completed());
    }
}

TEST_F(FoldersNavigatorTest, StopEndsAListingBetweenTwoItems) {
    std::atomic<int> items = 0;
    std::promise<void> reached;
    m_held->before_next = [&] {
        if (++items != 2)
            return;
        reached.set_value();
        while (m_navigator->IsRunning())
            Sleep(1);
    };
    const Tests::LogCapture log;
    EXPECT_HRESULT(S_OK, m_navigator->SetFolder(NameOf(L"/Docs")));
    reached.get_future().wait();
    PostQuitMessage(7);
    m_navigator->Stop();
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "a request to quit was lost";
    EXPECT_EQ(7U, message.wParam);
    EXPECT_EQ(2, items);
    EXPECT_TRUE(log.Has("FoldersNavigator::Complete<-- canceled\n"));
    EXPECT_TRUE(log.Has("Expression: \"m_is_running\" caused returning \"HRESULT 0x821704c7"));
    EXPECT_FALSE(m_navigator->IsRunning());
    EXPECT_TRUE(m_results.empty());

    m_held->before_next = [] {};
    EXPECT_HRESULT(S_OK, m_navigator->Refresh());
    EXPECT_HRESULT(S_OK, Completed());
    EXPECT_EQ(3U, Listed().size());
}

TEST_F(FoldersNavigatorTest, StopReachesTheCallThatIsUnderWay) {
    for (auto* const call : {&m_held->in_file_info, &m_held->in_listing}) {
        std::promise<void> reached;
        bool is_noticed = false;
        *call = [&](Qorv::IQorv_CancelFlag* i_flag) {
            reached.set_value();
            for (const ULONGLONG end = GetTickCount64() + patience; !IsCanceled(i_flag) && GetTickCount64() < end;)
                Sleep(1);
            is_noticed = IsCanceled(i_flag);
        };
        EXPECT_HRESULT(S_OK, m_navigator->SetFolder(m_root));
        reached.get_future().wait();
        m_navigator->Stop();
        EXPECT_TRUE(is_noticed);
        *call = [](Qorv::IQorv_CancelFlag*) {};
        m_navigator = MakeNavigator();
    }
    Show(m_root); // A flag belongs to one load: it doesn't stop the next.
}

TEST_F(FoldersNavigatorTest, TellsWhyALoadFailed) {
    Show(m_root);
    const ComPtr<IAFS_Name> docs = ListedName(L"/Docs");
    std::filesystem::remove_all(Tests::Service::LocalPath(L"/Docs"));
    EXPECT_HRESULT(S_OK, m_navigator->SetFolder(docs));
    EXPECT_HRESULT(E_FAIL, Completed());
    EXPECT_EQ(409u, m_navigator->GetFailureReason().http_status);
    EXPECT_TRUE(m_navigator->GetFailureReason().summary.starts_with(L"path/not_found/"));
    EXPECT_NE(std::wstring::npos, m_navigator->GetFailureReason().words.find(L"HTTP 409: "));
    EXPECT_EQ(docs.Get(), m_navigator->GetFolder());

    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    EXPECT_HRESULT(S_OK, m_navigator->Refresh());
    EXPECT_HRESULT(S_OK, Completed());
    EXPECT_EQ(L"", m_navigator->GetFailureReason().words);
    EXPECT_EQ(0u, m_navigator->GetFailureReason().http_status);
}

TEST_F(FoldersNavigatorTest, StopsAThousandTimesWithTheCompletionHeld) {
    m_held->KeepListing(m_root);
    const ULONG objects_before = Qorv::g_live_objects;
    DWORD handles_before = 0, handles_after = 0;
    for (int i = 0; i < 1000 && !HasFatalFailure(); ++i) {
        if (i == 10) // What the system creates only once exists by now.
            GetProcessHandleCount(GetCurrentProcess(), &handles_before);
        ASSERT_HRESULT_SUCCEEDED(m_navigator->GetFolder() == nullptr ? m_navigator->SetFolder(m_root)
                                                                     : m_navigator->Refresh());
        if (i % 8 != 0)
            WaitForHeldCompletion(); // The worker waits for this thread, which is about to wait for the worker.
        if (i % 4 == 0) {
            m_navigator->Stop();
        } else if (i % 4 == 1) {
            m_navigator = MakeNavigator();
        } else if (i % 4 == 2) {
            m_navigator->Abandon(); // The next round's load waits for its end.
        } else {
            m_navigator->Abandon();
            const HANDLE reaped = CreateEventW(nullptr, TRUE, FALSE, nullptr);
            const auto reaper = std::async(std::launch::async, [&, navigator = std::move(m_navigator)]() mutable {
                navigator.reset();
                SetEvent(reaped);
            });
            EXPECT_TRUE(m_host->MainThread().WaitAndPump(reaped, patience)) << "dead-lock";
            reaper.wait();
            CloseHandle(reaped);
            m_navigator = MakeNavigator();
        }
    }
    m_navigator = MakeNavigator();
    EXPECT_TRUE(m_results.empty()) << "a stopped load was completed";
    EXPECT_EQ(objects_before, Qorv::g_live_objects.load());
    GetProcessHandleCount(GetCurrentProcess(), &handles_after);
    EXPECT_LE(handles_after, handles_before + 10);
}

} // namespace
