// The plug-in object: what it says about itself, and its life cycle in a host where one step fails.

#include "afs/FileSystem.h"
#include "core/EventsHandler.h"
#include "core/Plugin.h"
#include "core/host/ThreadSafeCall.h"
#include "host/MainInstance.h"
#include "qorv/Values.h"
#include "support/ForwardingHost.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "support/TemporaryFolder.h"
#include "ui/dialog/OpenSaveDialog.h"

#include <algorithm>
#include <functional>

using namespace Tests;
using Qorv::Bstr;
using Qorv::ComPtr;

namespace {

/// The development host, except for one call, which fails.
class FailingHost final : public ForwardingHost<FailingHost> {
public:
    FailingHost(Qorv::IQorv_Inst* i_host, std::wstring i_failing)
        : ForwardingHost(i_host), m_failing(std::move(i_failing)) {}

    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override {
        return m_failing == i_name ? E_ABORT : m_host->GetExtension(i_name, o_service);
    }
    HRESULT STDMETHODCALLTYPE GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                Qorv::IAUX_CabNode** o_settings) noexcept override {
        return Fails(L"settings") ? E_ABORT : m_host->GetPluginSettings(i_plugin, i_create, o_settings);
    }
    HRESULT STDMETHODCALLTYPE MergeLocalization(IStream* i_table) noexcept override {
        return Fails(L"localization") ? E_ABORT : m_host->MergeLocalization(i_table);
    }
    HRESULT STDMETHODCALLTYPE get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept override {
        return Fails(L"events") ? E_ABORT : m_host->get_EventServer(o_server);
    }
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override {
        m_wait = i_wait;
        return m_host->ExecuteOnMainThread(i_callback, i_wait);
    }

    DWORD m_wait = 0; ///< The wait that the last call for the main thread asked for.

private:
    bool Fails(const wchar_t* i_call) const { return m_failing == i_call; }

    std::wstring m_failing;
};

class PluginTest : public testing::Test {
protected:
    PluginTest() {
        OleInitialize(nullptr);
        m_host = Qorv::Create<DevHost::MainInstance>(m_profile.Path());
        m_plugin = Qorv::Create<Plugin>();
    }
    ~PluginTest() override {
        EXPECT_HRESULT(S_OK, m_plugin->Unload());
        m_host->Close();
        m_plugin.Reset();
        m_host.Reset();
        EXPECT_EQ(Qorv::g_live_objects, m_before) << "an object was not released";
        OleUninitialize();
    }

    const ULONG m_before = Qorv::g_live_objects;
    TemporaryFolder m_profile;
    ComPtr<DevHost::MainInstance> m_host;
    ComPtr<Plugin> m_plugin;
    LogCapture m_log;
};

TEST_F(PluginTest, SaysWhatItIs) {
    GUID guid{};
    EXPECT_HRESULT(S_OK, m_plugin->get__GUID(&guid));
    wchar_t guid_text[40];
    StringFromGUID2(guid, guid_text, 40);
    EXPECT_STREQ(guid_text, L"{A2EF94E6-73C0-4A9F-8C82-47A8C04122FE}");

    ULONG version = 0, vendor = 1, features = 1;
    EXPECT_HRESULT(S_OK, m_plugin->get_version(&version));
    EXPECT_HRESULT(S_OK, m_plugin->get_VendorID(&vendor));
    EXPECT_HRESULT(S_OK, m_plugin->get_Features(&features));
    EXPECT_EQ(version, 0x00010001u);
    EXPECT_EQ(vendor, 0u);
    EXPECT_EQ(features, 0u);

    Bstr name, description, copyright, legal, publisher;
    EXPECT_HRESULT(S_OK, m_plugin->get_Name(&name));
    EXPECT_HRESULT(S_OK, m_plugin->get_Description(&description));
    EXPECT_HRESULT(S_OK, m_plugin->get_CopyrightInfo(&copyright));
    EXPECT_HRESULT(S_OK, m_plugin->get_LegalInfo(&legal));
    EXPECT_HRESULT(S_OK, m_plugin->get_Publisher(&publisher));
    EXPECT_EQ(name.View(), L"Dropbox");
    EXPECT_EQ(description.View(), L"Dropbox plugin allows users work with in files located in Dropbox.");
    EXPECT_EQ(copyright.View(), legal.View());
    EXPECT_EQ(std::ranges::count(legal.View(), L'\n'), 1);
    EXPECT_FALSE(publisher.View().empty());
}

TEST_F(PluginTest, RefusesNullPlaces) {
    const struct {
        const char* name;
        std::function<HRESULT()> call;
    } rows[] = {
        {"get__GUID", [&] { return m_plugin->get__GUID(nullptr); }},
        {"get_Name", [&] { return m_plugin->get_Name(nullptr); }},
        {"get_CopyrightInfo", [&] { return m_plugin->get_CopyrightInfo(nullptr); }},
        {"get_version", [&] { return m_plugin->get_version(nullptr); }},
        {"get_VendorID", [&] { return m_plugin->get_VendorID(nullptr); }},
        {"get_Description", [&] { return m_plugin->get_Description(nullptr); }},
        {"get_LegalInfo", [&] { return m_plugin->get_LegalInfo(nullptr); }},
        {"get_Publisher", [&] { return m_plugin->get_Publisher(nullptr); }},
        {"get_Features", [&] { return m_plugin->get_Features(nullptr); }},
    };
    for (const auto& row : rows) {
        EXPECT_HRESULT(E_POINTER, row.call());
        EXPECT_TRUE(m_log.Has(std::string("Plugin::") + row.name + "<-- Expression: \"o_")) << row.name;
    }
    EXPECT_HRESULT(E_INVALIDARG, m_plugin->Setup(nullptr));
    EXPECT_TRUE(m_log.Has("Plugin::Setup<-- Expression: \"pInst != nullptr\" caused returning \"HRESULT 0x80070057: "));
}

TEST_F(PluginTest, HasNoPageAndNoData) {
    EXPECT_HRESULT(E_NOTIMPL, m_plugin->ShowPrefsDlg(nullptr));
    EXPECT_HRESULT(E_NOTIMPL, m_plugin->ImportAdditionalData(nullptr));
    EXPECT_HRESULT(E_NOTIMPL, m_plugin->ExportAdditionalData(nullptr));
    EXPECT_HRESULT(S_OK, m_plugin->ResetSettings());
    EXPECT_HRESULT(S_OK, m_plugin->Unload()) << "there is nothing to unload";
    EXPECT_TRUE(m_log.Has("Plugin::ShowPrefsDlg<-- E_NOTIMPL\n"));
}

TEST_F(PluginTest, LivesAndIsUnloaded) {
    EXPECT_HRESULT(S_OK, m_plugin->Setup(m_host));
    EXPECT_HRESULT(S_OK, m_plugin->RegisterExts());
    EXPECT_HRESULT(S_OK, m_plugin->FinalizeRegistering());
    EXPECT_HRESULT(S_OK, m_plugin->Init());
    ULONG pictures = 0;
    ASSERT_NE(m_plugin->m_icon, nullptr);
    EXPECT_HRESULT(S_OK, m_plugin->m_icon->get_Count(&pictures));
    EXPECT_EQ(pictures, 4u);
    const ULONG sizes[] = {16, 24, 32, 48};
    for (ULONG i = 0; i < pictures; ++i) {
        ComPtr<Qorv::IUIX_Bitmap> bitmap;
        ULONG width = 0;
        EXPECT_HRESULT(S_OK, m_plugin->m_icon->get_Bitmap(i, &bitmap));
        EXPECT_HRESULT(S_OK, bitmap->get_Width(&width));
        EXPECT_EQ(width, sizes[i]);
    }
    EXPECT_NE(m_host->FileSystems().Find(L"Dropbox"), nullptr);
    Bstr name;
    EXPECT_HRESULT(S_OK, m_host->GetLocalStr(L"db.str.fileSystemName", &name));
    EXPECT_EQ(name.View(), L"Dropbox");

    EXPECT_HRESULT(S_OK, m_plugin->Unload());
    EXPECT_EQ(m_host->FileSystems().Find(L"Dropbox"), nullptr);
    EXPECT_EQ(m_plugin->m_qorv_inst, nullptr);
    EXPECT_EQ(m_plugin->m_events_handler, nullptr);
    EXPECT_NE(m_plugin->m_icon, nullptr) << "the host may still show it";
    EXPECT_HRESULT(S_OK, m_plugin->Unload()) << "a second time";
}

TEST_F(PluginTest, UnloadStopsTheEventHandler) {
    EXPECT_HRESULT(S_OK, m_plugin->Setup(m_host));
    EXPECT_HRESULT(S_OK, m_plugin->RegisterExts());
    EXPECT_HRESULT(S_OK, m_plugin->Init());
    const ComPtr<EventsHandler> handler = m_plugin->m_events_handler;
    EXPECT_NE(handler->GetDialog(), nullptr);
    EXPECT_HRESULT(S_OK, m_plugin->Unload());
    EXPECT_EQ(handler->GetDialog(), nullptr);
    ULONG event = 0;
    EXPECT_HRESULT(S_OK, m_host->StringToID(L"e.mainView.customizeCmdBars", VARIANT_FALSE, &event));
    ComPtr<Qorv::IQorv_EventServer> events;
    EXPECT_HRESULT(S_OK, m_host->get_EventServer(&events));
    EXPECT_HRESULT(E_INVALIDARG, events->UnregisterNativeEventHandler(event, handler)) << "it hears of events still";
}

TEST_F(PluginTest, WaitsForTheMainThreadWithoutLimit) {
    const auto host = Qorv::Create<FailingHost>(m_host, L"");
    EXPECT_HRESULT(S_OK, CallThreadSafe(host, [] {}));
    EXPECT_EQ(host->m_wait, INFINITE) << "a person may take hours for a question";
}

TEST_F(PluginTest, IsUnloadedAfterAnyStepThatFailed) {
    struct {
        const wchar_t* failing;
        std::size_t good_steps;
        const char* expression; // "" where the failure is ignored.
    } const rows[] = {
        {L"AFS", 0, "m_qorv_inst->GetExtension(L\"AFS\", (IUnknown**)&m_afs_inst)"},
        {L"AUX", 0, "m_qorv_inst->GetExtension(L\"AUX\", (IUnknown**)&m_aux_inst)"},
        {L"UIX", 0, "m_qorv_inst->GetExtension(L\"UIX\", (IUnknown**)&m_uix_inst)"},
        {L"localization", 4, ""},
        {L"settings", 3, "m_qorv_inst->GetPluginSettings(this, VARIANT_TRUE, &settings)"},
        {L"events", 3, "m_events_handler->Init()"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.failing));
        const LogCapture log;
        const auto host = Qorv::Create<FailingHost>(m_host, row.failing);
        const auto plugin = Qorv::Create<Plugin>();
        const std::function<HRESULT()> steps[] = {
            [&] { return plugin->Setup(host); }, [&] { return plugin->RegisterExts(); },
            [&] { return plugin->FinalizeRegistering(); }, [&] { return plugin->Init(); }};
        std::size_t good_steps = 0;
        while (good_steps < std::size(steps) && SUCCEEDED(steps[good_steps]()))
            ++good_steps;
        EXPECT_EQ(good_steps, row.good_steps);
        EXPECT_TRUE(log.Has(std::string("Expression: \"") + row.expression) || row.expression[0] == '\0');
        if (row.failing == std::wstring(L"UIX")) {
            EXPECT_TRUE(plugin->m_aux_inst != nullptr && plugin->m_uix_inst == nullptr) << "nothing is rolled back";
        }
        EXPECT_HRESULT(S_OK, plugin->Unload());
    }
}

} // namespace
