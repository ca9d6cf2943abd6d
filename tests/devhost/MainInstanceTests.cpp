// The host's main instance: calls onto the main thread, texts, events, images and services.

#include "UnusedInterfaces.h"
#include "host/MainInstance.h"
#include "qorv/Values.h"
#include "services/BindContext.h"
#include "services/Bitmap.h"
#include "services/EventServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <shlwapi.h>

#include <atomic>
#include <functional>
#include <thread>

namespace Tests {
namespace {

using Qorv::ComPtr;

class Callback final : public Qorv::CoClass<Callback, Qorv::IQorv_ThreadSafeCallback> {
public:
    explicit Callback(std::function<HRESULT()> i_call) : m_call(std::move(i_call)) {}
    HRESULT STDMETHODCALLTYPE OnExecute() noexcept override { return m_call(); }

private:
    std::function<HRESULT()> m_call;
};

class Handler final : public Qorv::CoClass<Handler, Qorv::IEventHandler> {
public:
    HRESULT STDMETHODCALLTYPE OnEvent(ULONG i_event, IUnknown*, IUnknown*) noexcept override {
        last_event = i_event;
        return S_OK;
    }
    ULONG last_event = 0;
};

class MainInstanceTest : public testing::Test {
protected:
    MainInstanceTest() {
        OleInitialize(nullptr);
        m_host = Qorv::Create<DevHost::MainInstance>(m_folder.Path());
    }
    ~MainInstanceTest() override {
        m_host->Close();
        m_host.Reset();
        OleUninitialize();
    }

    /// Runs code on a separate thread while the main thread waits and pumps.
    void OnWorker(const std::function<void()>& i_work) {
        const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        std::thread worker([&] {
            i_work();
            SetEvent(done);
        });
        EXPECT_TRUE(m_host->MainThread().WaitAndPump(done, 10'000));
        worker.join();
        CloseHandle(done);
    }

    HRESULT Merge(std::string_view i_table) {
        ComPtr<IStream> stream;
        stream.Attach(
            SHCreateMemStream(reinterpret_cast<const BYTE*>(i_table.data()), static_cast<UINT>(i_table.size())));
        return m_host->MergeLocalization(stream);
    }

    TemporaryFolder m_folder;
    ComPtr<DevHost::MainInstance> m_host;
};

TEST_F(MainInstanceTest, AnswersWorkersWhileTheMainThreadChangesThings) {
    class FileSystem final : public UnusedFileSystem<FileSystem> {};
    const auto merge = [&](int i_text) {
        return Merge(R"(<localization language="en" namespace="t"><string id="a">text</string><string id="i)" +
                     std::to_string(i_text) + R"(">text</string></localization>)");
    };
    ASSERT_EQ(merge(0), S_OK);
    const auto known = Qorv::Create<FileSystem>();
    ASSERT_EQ(m_host->FileSystems().RegisterFileSys(known), S_OK);
    std::atomic<bool> ends = false;
    int failures = 0;
    std::thread worker([&] {
        while (!ends) {
            Qorv::Bstr text;
            ComPtr<Qorv::IAFS_FilesCache> cache;
            ComPtr<Qorv::IAFS_BindContext> context;
            failures += m_host->GetLocalStr(L"t.a", &text) != S_OK || text.View() != L"text";
            failures += m_host->FileSystems().GetFilesCache(known, &cache) != S_OK;
            failures += m_host->CreateStdBindContext(&context) != S_OK;
        }
    });
    for (int round = 0; round < 300; ++round) {
        EXPECT_EQ(merge(round), S_OK);
        const auto other = Qorv::Create<FileSystem>();
        EXPECT_EQ(m_host->FileSystems().RegisterFileSys(other), S_OK);
        EXPECT_EQ(m_host->FileSystems().UnregisterFileSys(other), S_OK);
    }
    ends = true;
    worker.join();
    EXPECT_EQ(failures, 0);
}

TEST_F(MainInstanceTest, RunsCallsOnTheMainThread) {
    const DWORD main_thread = GetCurrentThreadId();
    DWORD thread = 0;
    const auto callback = Qorv::Create<Callback>([&] {
        thread = GetCurrentThreadId();
        return S_FALSE;
    });
    EXPECT_EQ(m_host->ExecuteOnMainThread(callback, INFINITE), S_FALSE) << "at once, from the main thread itself";
    EXPECT_EQ(std::exchange(thread, 0), main_thread);
    OnWorker([&] { EXPECT_EQ(m_host->ExecuteOnMainThread(callback, INFINITE), S_FALSE); });
    EXPECT_EQ(thread, main_thread);
    EXPECT_EQ(m_host->ExecuteOnMainThread(nullptr, 0), E_POINTER);
}

TEST_F(MainInstanceTest, RunsACallWhileAnotherOneWaitsForIt) {
    int runs = 0;
    const auto inner = Qorv::Create<Callback>([&] {
        ++runs;
        return S_OK;
    });
    const auto outer = Qorv::Create<Callback>([&] {
        OnWorker([&] { EXPECT_EQ(m_host->ExecuteOnMainThread(inner, INFINITE), S_OK); });
        ++runs;
        return S_OK;
    });
    OnWorker([&] { EXPECT_EQ(m_host->ExecuteOnMainThread(outer, INFINITE), S_OK); });
    EXPECT_EQ(runs, 2);
}

TEST_F(MainInstanceTest, TakesBackACallThatWasNotBegunInTime) {
    bool has_run = false;
    const auto callback = Qorv::Create<Callback>([&] {
        has_run = true;
        return S_OK;
    });
    std::thread([&] { // The main thread does not pump meanwhile.
        EXPECT_EQ(m_host->ExecuteOnMainThread(callback, 20), HRESULT_FROM_WIN32(WAIT_TIMEOUT));
    })
        .join();
    OnWorker([] {});
    EXPECT_FALSE(has_run) << "its caller has gone, with all that it would touch";
}

TEST_F(MainInstanceTest, EndsWaitingCallsAtItsEnd) {
    const auto callback = Qorv::Create<Callback>([] { return S_OK; });
    HRESULT result = S_OK;
    std::thread worker([&] { result = m_host->ExecuteOnMainThread(callback, INFINITE); });
    while (!m_host->MainThread().HasPendingCalls())
        std::this_thread::yield();
    m_host->Close();
    worker.join();
    EXPECT_EQ(result, E_ABORT);
    std::thread([&] { result = m_host->ExecuteOnMainThread(callback, INFINITE); }).join();
    EXPECT_EQ(result, E_ABORT);
}

TEST_F(MainInstanceTest, MergesTextsAndFindsThemByTheirFullId) {
    EXPECT_EQ(Merge("<localization language=\"en\" namespace=\"db\"><!-- x --><string id=\"str.a\">A &amp; \xC3\xA4\nb"
                    "</string><string id=\"str.b\"/></localization>"),
              S_OK);
    EXPECT_EQ(Merge(R"(<localization language="de" namespace="db"><string id="str.a">German</string></localization>)"),
              S_OK);
    Qorv::Bstr text;
    EXPECT_EQ(m_host->GetLocalStr(L"db.str.a", &text), S_OK);
    EXPECT_EQ(text.View(), L"A & \u00E4\nb");
    EXPECT_EQ(m_host->GetLocalStr(L"db.str.b", &text), S_OK);
    EXPECT_EQ(text.View(), L"");
    EXPECT_EQ(m_host->GetLocalStr(L"str.a", &text), E_INVALIDARG);
    EXPECT_EQ(
        Merge(R"(<localization language="en" namespace="db"><string id="str.a">New</string><text/></localization>)"),
        E_INVALIDARG);
    EXPECT_EQ(Merge("<localization"), E_INVALIDARG);
    EXPECT_EQ(m_host->GetLocalStr(L"db.str.a", &text), S_OK);
    EXPECT_EQ(text.View(), L"A & \u00E4\nb") << "nothing is taken of a bad table";
}

TEST_F(MainInstanceTest, TellsHandlersOfTheirEventsAndLetsGoOfThemAtTheEnd) {
    ULONG first = 0;
    ULONG again = 0;
    ULONG other = 0;
    EXPECT_EQ(m_host->StringToID(L"e.one", VARIANT_FALSE, &first), E_INVALIDARG);
    EXPECT_EQ(m_host->StringToID(L"e.one", VARIANT_TRUE, &first), S_OK);
    EXPECT_EQ(m_host->StringToID(L"e.two", VARIANT_TRUE, &other), S_OK);
    EXPECT_EQ(m_host->StringToID(L"e.one", VARIANT_FALSE, &again), S_OK);
    EXPECT_EQ(first, again);
    EXPECT_NE(first, other);

    const ULONG objects_before = Qorv::g_live_objects;
    auto handler = Qorv::Create<Handler>();
    DevHost::EventServer& events = m_host->Events();
    EXPECT_EQ(events.RegisterNativeEventHandler(first, handler, 0), S_OK);
    EXPECT_EQ(events.UnregisterNativeEventHandler(other, handler), E_INVALIDARG);
    events.Fire(other, nullptr, nullptr);
    EXPECT_EQ(handler->last_event, 0u);
    events.Fire(first, nullptr, nullptr);
    EXPECT_EQ(handler->last_event, first);
    handler.Reset();
    m_host->Close();
    EXPECT_EQ(Qorv::g_live_objects, objects_before);
}

TEST_F(MainInstanceTest, TellsWhichOfItsFilesIsDamaged) {
    class Plugin final : public UnusedPlugin<Plugin> {
    public:
        HRESULT STDMETHODCALLTYPE get__GUID(GUID* o_guid) noexcept override {
            *o_guid = Qorv::IQorv_Plugin::Id;
            return S_OK;
        }
    };
    const auto plugin = Qorv::Create<Plugin>();
    std::vector<std::wstring> notices;
    m_host = Qorv::Create<DevHost::MainInstance>(m_folder.Path(),
                                                 [&](const std::wstring& i_notice) { notices.push_back(i_notice); });
    ComPtr<Qorv::IAUX_CabNode> settings;
    EXPECT_EQ(m_host->GetPluginSettings(plugin, VARIANT_FALSE, &settings), S_OK);
    EXPECT_EQ(settings.Get(), nullptr) << "there are none, and none are to be made";
    EXPECT_EQ(m_host->GetPluginSettings(plugin, VARIANT_TRUE, &settings), S_OK);
    m_host->SaveSettings();

    const auto file = std::filesystem::directory_iterator(m_folder.Path() / "settings")->path();
    WriteBytes(file, "damaged");
    m_host = Qorv::Create<DevHost::MainInstance>(m_folder.Path(),
                                                 [&](const std::wstring& i_notice) { notices.push_back(i_notice); });
    EXPECT_EQ(m_host->GetPluginSettings(plugin, VARIANT_FALSE, &settings), HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT));
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find(file.wstring()), std::wstring::npos);
}

TEST_F(MainInstanceTest, HandsOutItsServicesByName) {
    for (const wchar_t* name : {L"AFS", L"AUX", L"UIX"}) {
        ComPtr<IUnknown> service;
        EXPECT_EQ(m_host->GetExtension(name, &service), S_OK);
        EXPECT_NE(service.Get(), nullptr);
    }
    ComPtr<IUnknown> none;
    EXPECT_EQ(m_host->GetExtension(L"none", &none), E_INVALIDARG);
    EXPECT_EQ(m_host->GetExtension(nullptr, &none), E_INVALIDARG);
    EXPECT_EQ(m_host->GetExtension(L"AFS", nullptr), E_POINTER);
}

TEST_F(MainInstanceTest, HandsTheAccountOfABindOut) {
    class Account final : public Qorv::CoClass<Account, Qorv::IAFS_AccountData> {
    public:
        HRESULT STDMETHODCALLTYPE get_URL(BSTR*) noexcept override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE get_UserName(BSTR*) noexcept override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE SaveTo(Qorv::IAUX_CabNode*) noexcept override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE VerifyURL(Qorv::PCStr, LONG*) noexcept override { return E_NOTIMPL; }
    };
    const ComPtr<Qorv::IAFS_AccountData> account = Qorv::Create<Account>();
    const ComPtr<Qorv::IAFS_BindContext> known = Qorv::Create<DevHost::BindContext>(account);
    EXPECT_EQ(known.As<Qorv::IAFS_AccountData>().Get(), account.Get());
    ComPtr<Qorv::IAFS_BindContext> unknown;
    EXPECT_EQ(m_host->CreateStdBindContext(&unknown), S_OK);
    void* none = nullptr;
    EXPECT_EQ(unknown->QueryInterface(Qorv::IAFS_AccountData::Id, &none), E_NOINTERFACE);
}

TEST_F(MainInstanceTest, DecodesPngAndNothingElse) {
    // 2 x 1 pixels: red, and green at half opacity.
    constexpr BYTE png[] = {137, 80,  78,  71, 13,  10,  26,  10, 0,   0,   0,   13,  73, 72,  68,  82, 0,  0,
                            0,   2,   0,   0,  0,   1,   8,   6,  0,   0,   0,   244, 34, 127, 138, 0,  0,  0,
                            15,  73,  68,  65, 84,  120, 156, 99, 248, 207, 192, 240, 31, 8,   27,  0,  16, 121,
                            3,   126, 125, 99, 206, 215, 0,   0,  0,   0,   73,  69,  78, 68,  174, 66, 96, 130};
    const auto decode = [&](const BYTE* i_bytes, UINT i_size, ComPtr<Qorv::IUIX_Bitmap>& o_bitmap) {
        ComPtr<IUnknown> service;
        EXPECT_EQ(m_host->GetExtension(L"UIX", &service), S_OK);
        ComPtr<IStream> stream;
        stream.Attach(SHCreateMemStream(i_bytes, i_size));
        return service.As<Qorv::IUIX_Inst>()->CreateBitmapFromStream(stream, &o_bitmap);
    };
    ComPtr<Qorv::IUIX_Bitmap> bitmap;
    ASSERT_EQ(decode(png, sizeof(png), bitmap), S_OK);
    ULONG width = 0;
    ULONG height = 0;
    EXPECT_EQ(bitmap->get_Width(&width), S_OK);
    EXPECT_EQ(bitmap->get_Height(&height), S_OK);
    EXPECT_EQ(width, 2u);
    EXPECT_EQ(height, 1u);
    EXPECT_EQ(static_cast<DevHost::Bitmap*>(bitmap.Get())->Pixels(),
              (std::vector<std::uint32_t>{0xFFFF0000, 0x80008000}));
    EXPECT_LT(decode(png, 20, bitmap), 0);
    EXPECT_LT(decode(reinterpret_cast<const BYTE*>("no picture"), 10, bitmap), 0);
    EXPECT_EQ(bitmap.Get(), nullptr);
}

} // namespace
} // namespace Tests
