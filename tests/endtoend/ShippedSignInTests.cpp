// The sign-in through the shipped module, its dialog in a real window, and a person at the service's pages: every way
// it can end.

#include "ShippedModule.h"

#include "browser/BrowserRegistration.h"
#include "host/PluginHost.h"
#include "qorv/Values.h"
#include "script/WindowScript.h"
#include "services/CabNode.h"
#include "support/DevService.h"
#include "support/Outcome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <memory>
#include <optional>

namespace Tests {
namespace {

using Qorv::ComPtr;

const std::string sign_in_as_ada = "text Email\nfill email Ada Example\nfill password sample\npress Sign in\n"
                                   "text Allow\npress Allow\n";
const std::string sign_in_as_ben = "text Email\nfill email Ben Example\nfill password sample\npress Sign in\n"
                                   "text Allow\npress Allow\n";

class SignInTest : public ServiceTest {
protected:
    SignInTest() {
        OleInitialize(nullptr);
        m_browser.emplace();
        m_host.emplace(m_profile.Path(), ModulePath(), [](const std::wstring&) {});
    }

    ~SignInTest() override {
        EXPECT_EQ(0, VisibleWindows());
        EXPECT_NO_THROW(m_host->Unload());
        m_host.reset();
        m_browser.reset();
        OleUninitialize();
    }

    /// Makes an account, new or for a known user, while a person does the steps.
    HRESULT SignIn(const std::string& i_steps, const std::wstring& i_user_id = {},
                   const std::wstring& i_user_name = {}) {
        WriteBytes(m_profile.Path() / "steps", i_steps);
        const DevHost::WindowScript script(m_profile.Path() / "steps", 10'000);
        m_saved = Qorv::Create<DevHost::CabNode>();
        m_saved->Member(L"UserId")->SetValue(i_user_id);
        m_saved->Member(L"UserName")->SetValue(i_user_name);
        m_account.Reset();
        const HRESULT result = m_host->FileSystem().CreateAccount(m_saved, nullptr, nullptr, &m_account);
        EXPECT_FALSE(script.HasFailed());
        EXPECT_TRUE(script.IsDone());
        return result;
    }

    std::wstring UserName() const {
        Qorv::Bstr name;
        EXPECT_HRESULT(S_OK, m_account->get_UserName(&name));
        return std::wstring(name.View());
    }

    std::wstring UserId() const {
        const auto cab = Qorv::Create<DevHost::CabNode>();
        EXPECT_HRESULT(S_OK, m_account->SaveTo(cab));
        ComPtr<Qorv::IAUX_CabNode> item;
        Qorv::Bstr id;
        EXPECT_HRESULT(S_OK, cab->get_Item(L"UserId", &item));
        EXPECT_HRESULT(S_OK, item->get_String(&id));
        return std::wstring(id.View());
    }

    static auto Revocations() {
        return std::ranges::count_if(Service::Requests(), [](const Service::Request& request) {
            return request.line.starts_with("POST /2/auth/token/revoke");
        });
    }

    static int VisibleWindows() {
        int count = 0;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND window, LPARAM count_address) -> BOOL {
                *reinterpret_cast<int*>(count_address) += IsWindowVisible(window) ? 1 : 0;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&count));
        return count;
    }

    TemporaryFolder m_profile;
    std::optional<DevHost::BrowserRegistration> m_browser;
    std::optional<DevHost::PluginHost> m_host;
    ComPtr<DevHost::CabNode> m_saved;
    ComPtr<Qorv::IAFS_AccountData> m_account;
};

TEST_F(SignInTest, AllowedOneAfterTheOther) {
    EXPECT_HRESULT(S_OK, SignIn(sign_in_as_ada));
    EXPECT_EQ(UserName(), L"Ada Example");
    EXPECT_TRUE(UserId().starts_with(L"dbid:")) << "the service's own form, without percent escapes";
    const std::wstring ada = UserId();

    EXPECT_HRESULT(S_OK, SignIn(sign_in_as_ada, ada)) << "the right user again is no stranger";
    EXPECT_HRESULT(S_OK, SignIn(sign_in_as_ben));
    EXPECT_EQ(UserName(), L"Ben Example");
    EXPECT_EQ(0, Revocations());
    m_account.Reset();
}

TEST_F(SignInTest, LeavesNoTokenWhenTheServiceCannotSayWhoseItIs) {
    Service::AddFault(R"({"path": "2/users/get_current_account", "status": 500})");
    EXPECT_FALSE(SUCCEEDED(SignIn(sign_in_as_ada)));
    EXPECT_EQ(m_account, nullptr);
    EXPECT_EQ(1, Revocations());
    Service::ClearFaults();
}

TEST_F(SignInTest, EndsAsCanceled) {
    struct Row {
        const char* name;
        std::string steps;
        const char* fault;
    };
    for (const Row& row : {
             Row{"closed at once", "text Email\nclose\n", nullptr},
             Row{"closed after a wrong password",
                 "text Email\nfill email Ada Example\nfill password wrong\npress Sign in\ntext Wrong\nclose\n",
                 nullptr},
             Row{"access refused",
                 "text Email\nfill email Ada Example\nfill password sample\npress Sign in\ntext Allow\npress Cancel\n"
                 "page https://www.dropbox.com/1/oauth2/redirect_receiver\nclose\n",
                 nullptr},
             Row{"the page fails to load", "text 500\nclose\n", R"({"path": "logout", "status": 500})"},
         }) {
        SCOPED_TRACE(row.name);
        if (row.fault != nullptr)
            Service::AddFault(row.fault);
        EXPECT_HRESULT(Qorv::ErrorCanceled, SignIn(row.steps));
        EXPECT_EQ(m_account, nullptr);
        Service::ClearFaults();
    }
}

TEST_F(SignInTest, SomebodyElseIsRefusedAndForgotten) {
    ASSERT_HRESULT_SUCCEEDED(SignIn(sign_in_as_ada));
    const std::wstring ada = UserId();
    m_account.Reset();
    Service::ClearRequests();

    EXPECT_HRESULT(
        S_OK,
        SignIn(sign_in_as_ben + "press Choose user\n" + sign_in_as_ben + "press Choose user\n" + sign_in_as_ada, ada));
    EXPECT_EQ(UserId(), ada);
    EXPECT_EQ(2, Revocations()) << "no token of the stranger lives on";
    m_account.Reset();

    Service::ClearRequests();
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignIn(sign_in_as_ben + "press Cancel\n", ada));
    EXPECT_EQ(m_account, nullptr);
    EXPECT_EQ(1, Revocations());
}

// What comes through the browser is not what the service says.
TEST_F(SignInTest, TheServiceSaysWhoseTokenItIs) {
    ASSERT_HRESULT_SUCCEEDED(SignIn(sign_in_as_ada));
    const std::wstring ada = UserId();
    m_account.Reset();
    for (const std::wstring& user_id : {ada, std::wstring()}) {
        Service::ClearRequests();
        Service::AddFault(R"({"path": "2/users/get_current_account",
                              "body": "{\"account_id\": \"dbid:other\", \"name\": {\"display_name\": \"Other\"}}"})");
        EXPECT_HRESULT(S_OK, SignIn(sign_in_as_ada + "press Choose user\n" + sign_in_as_ada, user_id));
        EXPECT_EQ(UserId(), ada);
        EXPECT_EQ(1, Revocations());
        m_account.Reset();
    }
}

TEST_F(SignInTest, TheQuestionNamesTheAccount) {
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignIn(sign_in_as_ben + "text belongs to Cleo Example\npress Cancel\n",
                                               L"dbid:cleo", L"Cleo Example"));
}

TEST_F(SignInTest, AskedForOnAWorkerItRunsOnTheMainThread) {
    WriteBytes(m_profile.Path() / "steps", sign_in_as_ada);
    const DevHost::WindowScript script(m_profile.Path() / "steps", 10'000);
    const std::unique_ptr<void, decltype(&CloseHandle)> done(CreateEventW(nullptr, TRUE, FALSE, nullptr), &CloseHandle);
    auto worker = std::async(std::launch::async, [&] {
        ComPtr<Qorv::IAFS_AccountData> account;
        const HRESULT result = m_host->FileSystem().CreateAccount(nullptr, nullptr, nullptr, &account);
        account.Reset();
        SetEvent(done.get());
        return result;
    });
    EXPECT_TRUE(m_host->Host().MainThread().WaitAndPump(done.get(), 20'000));
    EXPECT_HRESULT(S_OK, worker.get());
    EXPECT_FALSE(script.HasFailed());
}

} // namespace
} // namespace Tests
