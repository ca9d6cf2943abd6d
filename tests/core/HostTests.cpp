// How the core uses the host's services: settings, secrets, the main thread. The services are the development host's
// own.

#include "core/Plugin.h"
#include "core/host/Cab.h"
#include "core/host/CabEncryptor.h"
#include "core/host/Resource.h"
#include "core/host/ThreadSafeCall.h"
#include "core/trace/ErrorText.h"
#include "core/trace/Text.h"
#include "host/MainInstance.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "support/TemporaryFolder.h"

#include <thread>

using namespace Tests;
using Qorv::Bstr;
using Qorv::ComPtr;

namespace {

class HostTest : public testing::Test {
protected:
    HostTest() {
        OleInitialize(nullptr);
        m_host = Qorv::Create<DevHost::MainInstance>(m_profile.Path());
        m_plugin = Qorv::Create<Plugin>();
    }
    ~HostTest() override {
        m_plugin->Unload();
        m_host->Close();
        m_plugin.Reset();
        m_host.Reset();
        EXPECT_EQ(Qorv::g_live_objects, m_before) << "an object was not released";
        OleUninitialize();
    }

    void SetUpWithKey() {
        ComPtr<Qorv::IAUX_CryptKey> key;
        ASSERT_HRESULT_SUCCEEDED(m_host->GetCryptKey(m_plugin, VARIANT_TRUE, &key));
        ASSERT_HRESULT_SUCCEEDED(m_plugin->Setup(m_host));
    }

    static ComPtr<DevHost::CabNode> AccountCab() {
        auto cab = Qorv::Create<DevHost::CabNode>();
        EXPECT_HRESULT(S_OK, ApplyCabTemplate(nullptr, cab, MAKEINTRESOURCEW(IDR_ACCOUNT_DATA_CAB_XML),
                                              L"DropboxAccountDataSettingsV1"));
        return cab;
    }

    const ULONG m_before = Qorv::g_live_objects;
    TemporaryFolder m_profile;
    ComPtr<DevHost::MainInstance> m_host;
    ComPtr<Plugin> m_plugin;
    LogCapture m_log;
};

TEST_F(HostTest, TemplatesDeclareTheirItems) {
    using Items = std::vector<std::pair<const wchar_t*, LONG>>;
    constexpr LONG text = VT_BSTR, number = VT_I4, object = VT_UNKNOWN, none = VT_EMPTY;
    struct {
        int resource;
        const wchar_t* root;
        Items items; // With the kind of value that each one takes.
    } const rows[] = {
        {IDR_SETTINGS_CAB_XML, L"Root", {{L"OpenSaveDialog", none}, {L"Sessions", none}}},
        {IDR_ACCOUNT_DATA_CAB_XML,
         L"DropboxAccountDataSettingsV1",
         {{L"UserId", text}, {L"Token", text}, {L"UserName", text}, {L"Path", text}}},
        {IDR_OPEN_SAVE_DIALOG_PARAMETERS_CAB_XML,
         L"OpenSaveDialogParametersCabTemplateV1",
         {{L"Flags", number},
          {L"Title", text},
          {L"ActionBtnTitle", text},
          {L"CancelBtnTitle", text},
          {L"SettingsBtnTitle", text},
          {L"FileFilters", text},
          {L"FileFilterIndex", number},
          {L"DefaultExt", text},
          {L"InitialPathName", object},
          {L"InitialFileName", text},
          {L"SettingsBtnCallbacks", object}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.resource);
        const auto cab = Qorv::Create<DevHost::CabNode>();
        EXPECT_HRESULT(S_OK, ApplyCabTemplate(nullptr, cab, MAKEINTRESOURCEW(row.resource), row.root));
        const CabDictionary dictionary(cab);
        for (const auto& [id, type] : row.items) {
            SCOPED_TRACE(ToUtf8(id));
            const auto item = dictionary[id];
            const Qorv::Variant values[] = {Qorv::Variant(Bstr(L"x")), Qorv::Variant(LONG{1}),
                                            Qorv::Variant(static_cast<IUnknown*>(m_host))};
            for (const auto& value : values)
                EXPECT_EQ(SUCCEEDED(item->put_v(value)), value->vt == type) << value->vt;
        }
        const Outcome unknown = OutcomeOf([&] { dictionary[L"Unknown"]; });
        EXPECT_HRESULT(E_INVALIDARG, unknown.code);
        EXPECT_HRESULT(E_INVALIDARG, ApplyCabTemplate(nullptr, cab, MAKEINTRESOURCEW(row.resource), L"Other"));
    }
}

TEST_F(HostTest, ATemplateNeedsADictionaryAndAResource) {
    EXPECT_HRESULT(E_INVALIDARG, ApplyCabTemplate(nullptr, nullptr, MAKEINTRESOURCEW(IDR_SETTINGS_CAB_XML), L"Root"));
    EXPECT_TRUE(m_log.Has("ApplyCabTemplate<-- Expression: \"o_cab != nullptr\" caused returning \"HRESULT "
                          "0x80070057: "));
    const auto cab = Qorv::Create<DevHost::CabNode>();
    EXPECT_HRESULT(E_INVALIDARG, ApplyCabTemplate(nullptr, cab, L"NONE", L"Root"));
    EXPECT_TRUE(m_log.Has("\"o_cab->SetTemplate2(template_resource.GetData(), static_cast<long>(template_resource."
                          "GetSize()), i_template_name)\""));
}

TEST_F(HostTest, ReadsTexts) {
    const auto cab = AccountCab();
    const CabDictionary dictionary(cab);
    EXPECT_EQ(dictionary.StringOrEmpty(L"UserName"), L"") << "never set";
    cab->Member(L"UserName")->SetValue(std::wstring(L"Ada ü"));
    EXPECT_EQ(dictionary.StringOrEmpty(L"UserName"), L"Ada ü");
    cab->Member(L"UserName")->SetValue(LONG{5});
    EXPECT_EQ(dictionary.StringOrEmpty(L"UserName"), L"") << "no text";
}

TEST_F(HostTest, KeepsSecrets) {
    SetUpWithKey();
    const auto cab = AccountCab();
    for (const std::wstring& secret : {std::wstring(L"sl.secret-ü世"), std::wstring(), std::wstring(5000, L's')}) {
        EXPECT_HRESULT(S_OK, CabEncryptor::SaveEncryptedString(m_plugin, cab, L"Token", secret.c_str()));
        const std::wstring stored = cab->MemberText(L"Token");
        EXPECT_FALSE(stored.empty()) << "an empty secret is an encrypted empty text";
        EXPECT_TRUE(secret.empty() || stored.find(secret) == std::wstring::npos);
        Bstr loaded;
        EXPECT_HRESULT(S_OK, CabEncryptor::LoadEncryptedString(m_plugin, cab, L"Token", loaded));
        EXPECT_EQ(loaded.View(), secret);
    }
    EXPECT_HRESULT(S_OK, CabEncryptor::SaveEncryptedString(m_plugin, cab, L"Token", nullptr));
    Bstr loaded;
    EXPECT_HRESULT(S_OK, CabEncryptor::LoadEncryptedString(m_plugin, cab, L"Token", loaded));
    EXPECT_EQ(loaded.View(), L"");
    EXPECT_FALSE(m_log.Has("sl.secret"));
}

TEST_F(HostTest, TakesATextInClearAsItStands) {
    SetUpWithKey();
    const auto cab = AccountCab();
    for (const wchar_t* const text : {L"in clear", L""}) {
        cab->Member(L"Token")->SetValue(std::wstring(text));
        Bstr loaded;
        EXPECT_HRESULT(S_OK, CabEncryptor::LoadEncryptedString(m_plugin, cab, L"Token", loaded));
        EXPECT_EQ(loaded.View(), text);
    }
}

TEST_F(HostTest, AFailedSecretLeavesTheField) {
    const auto cab = AccountCab();
    cab->Member(L"Token")->SetValue(std::wstring(L"before"));
    Bstr loaded(L"untouched");
    EXPECT_HRESULT(E_POINTER, CabEncryptor::SaveEncryptedString(nullptr, cab, L"Token", L"x"));
    EXPECT_HRESULT(E_POINTER, CabEncryptor::LoadEncryptedString(nullptr, cab, L"Token", loaded));
    EXPECT_TRUE(m_log.Has("\"i_plugin != nullptr\" caused returning \"HRESULT 0x80004003: "));

    ASSERT_HRESULT_SUCCEEDED(m_plugin->Setup(m_host)); // The plug-in has no key.
    EXPECT_HRESULT(E_POINTER, CabEncryptor::SaveEncryptedString(m_plugin, cab, L"Token", L"x"));
    EXPECT_HRESULT(E_POINTER, CabEncryptor::LoadEncryptedString(m_plugin, cab, L"Token", loaded));
    EXPECT_EQ(loaded.View(), L"untouched") << "only what the host calls unencrypted is in clear";
    EXPECT_EQ(cab->MemberText(L"Token"), L"before");

    SetUpWithKey();
    EXPECT_HRESULT(E_INVALIDARG, CabEncryptor::SaveEncryptedString(m_plugin, cab, L"Unknown", L"x"));
    EXPECT_HRESULT(E_INVALIDARG, CabEncryptor::LoadEncryptedString(m_plugin, cab, L"Unknown", loaded));
    EXPECT_EQ(loaded.View(), L"untouched");
}

TEST_F(HostTest, RunsCodeOnTheMainThread) {
    const DWORD main_thread = GetCurrentThreadId();
    DWORD thread = 0;
    EXPECT_HRESULT(S_OK, CallThreadSafe(m_host, [&] { thread = GetCurrentThreadId(); }));
    EXPECT_EQ(thread, main_thread) << "at once on the main thread itself";

    thread = 0;
    HRESULT result = E_UNEXPECTED, failed = E_UNEXPECTED;
    const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::jthread worker([&] {
        result = CallThreadSafe(m_host, [&] { thread = GetCurrentThreadId(); });
        failed = CallThreadSafe(m_host, [] { throw HResultException(L"no", E_ABORT); });
        SetEvent(done);
    });
    EXPECT_TRUE(m_host->MainThread().WaitAndPump(done, 10'000));
    CloseHandle(done);
    EXPECT_EQ(thread, main_thread);
    EXPECT_HRESULT(S_OK, result);
    EXPECT_HRESULT(E_ABORT, failed);

    EXPECT_HRESULT(E_FAIL, CallThreadSafe(m_host, nullptr)) << "an empty callable";
    m_host->Close();
    bool ran = false;
    HRESULT late = S_OK;
    std::jthread([&] { late = CallThreadSafe(m_host, [&] { ran = true; }); }).join();
    EXPECT_HRESULT(E_ABORT, late);
    EXPECT_FALSE(ran);
}

} // namespace
