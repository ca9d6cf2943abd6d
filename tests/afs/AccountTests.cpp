#include "AfsTest.h"

#include "afs/AccountData.h"
#include "services/BindContext.h"

#include <atomic>
#include <functional>
#include <thread>

namespace {

class AccountTest : public Tests::AfsTest {
protected:
    HRESULT BindAgain() {
        Qorv::ComPtr<Qorv::IAFS_AccountData> account;
        return m_file_system->CreateAccount(SavedAccount(Tests::Service::Token()), m_details, nullptr, &account);
    }

    static std::wstring ItemText(Qorv::IAUX_CabNode* i_cab, const wchar_t* i_id) {
        Qorv::ComPtr<Qorv::IAUX_CabNode> item;
        EXPECT_HRESULT(S_OK, i_cab->get_Item(i_id, &item));
        Qorv::Bstr text;
        EXPECT_HRESULT(S_OK, item->get_String(&text));
        return std::wstring(text.View());
    }

    HRESULT BindToPath(const std::wstring& i_path, Qorv::IAFS_AccountData* i_account) {
        Qorv::ComPtr<Qorv::IAFS_Name> root;
        return m_file_system->BindToPath(i_path.c_str(), Qorv::Create<DevHost::BindContext>(i_account), 0, m_details,
                                         nullptr, &root);
    }
};

TEST_F(AccountTest, LocationsBelongToAccounts) {
    const auto account = Qorv::Create<AccountData>(m_plugin);
    account->SetUserId(L"abcd");
    const struct {
        const wchar_t* url;
        LONG expected;
    } cases[] = {
        {L"dropbox://abcd/x", 2}, {L"dropbox://abcd", 2},    {L"dropbox://abc/x", 2}, // Only its beginning is named.
        {L"dropbox://ABCD/x", 0}, {L"dropbox://abcde/x", 0}, {L"/x", 1},
        {L"dropbox:///x", 1},     {L"dropbox://", 1},
    };
    for (const auto& [url, expected] : cases) {
        LONG result = -1;
        EXPECT_HRESULT(S_OK, account->VerifyURL(url, &result));
        EXPECT_EQ(expected, result) << url;
    }
    const Tests::LogCapture log;
    LONG result = -1;
    const std::wstring long_url(20'000, L'x');
    EXPECT_HRESULT(S_OK, account->VerifyURL(long_url.c_str(), &result));
    EXPECT_HRESULT(S_OK, account->VerifyURL(L"/x", &result));
    EXPECT_TRUE(log.Has("Input URL '/x' verification result with account user 'abcd' and path '' is 1"));
    EXPECT_HRESULT(E_POINTER, account->VerifyURL(L"/x", nullptr));
}

TEST_F(AccountTest, ASavedAccountComesBack) {
    const auto account = CreateAccount(Tests::Service::Token());
    Qorv::Bstr user_name;
    EXPECT_HRESULT(S_OK, account->get_UserName(&user_name));
    EXPECT_EQ(L"Ada Example", user_name.View());

    const auto cab = Qorv::Create<DevHost::CabNode>();
    EXPECT_HRESULT(S_OK, account->SaveTo(cab));
    EXPECT_EQ(m_user_id, ItemText(cab, L"UserId"));
    EXPECT_EQ(L"Ada Example", ItemText(cab, L"UserName"));
    EXPECT_EQ(std::wstring::npos, ItemText(cab, L"Token").find(Tests::Service::Token())) << "the token is in clear";

    Qorv::ComPtr<AccountData> again;
    EXPECT_HRESULT(S_OK, AccountData::Create(m_plugin, cab, again));
    EXPECT_EQ(Tests::Service::Token(), again->GetToken());
    EXPECT_EQ(m_user_id, again->GetUserId());
    EXPECT_HRESULT(E_INVALIDARG, account->SaveTo(nullptr));
}

TEST_F(AccountTest, ItemsThatAreNoTextStayEmpty) {
    const auto cab = Qorv::Create<DevHost::CabNode>();
    cab->Member(L"Token")->SetValue(LONG{7});
    cab->Member(L"Path")->SetValue(L"dropbox://abc/x");
    Qorv::ComPtr<AccountData> account;
    EXPECT_HRESULT(S_OK, AccountData::Create(m_plugin, cab, account));
    EXPECT_EQ(L"", account->GetToken());
    EXPECT_EQ(L"", account->GetUserId());
    Qorv::Bstr path;
    EXPECT_HRESULT(S_OK, account->get_URL(&path));
    EXPECT_EQ(L"dropbox://abc/x", path.View());
}

TEST_F(AccountTest, TokensWithTheHeadersWordsAreTaken) {
    for (const wchar_t* prefix : {L"", L"Bearer ", L"authorization:bearer ", L"  Bearer \t ",
                                  L" Authorization: Bearer  ", L"\r\nAuthorization:\tbearer\t"}) {
        const auto account = Qorv::OwnObject<AccountData>(CreateAccount(prefix + Tests::Service::Token()));
        ASSERT_NE(nullptr, account) << prefix;
        EXPECT_EQ(Tests::Service::Token(), account->GetToken());
        EXPECT_EQ(m_user_id, account->GetUserId());
    }
}

TEST_F(AccountTest, BindsReadTheAccountOnce) {
    const auto root = Bind(Tests::Service::Token());
    EXPECT_EQ(2U, Calls("users/get_current_account")) << "once when the account was made, once when it was bound";
    EXPECT_EQ(2U, Tests::Service::Requests().size());
    EXPECT_EQ(Location(L""), TextOf(root));
}

TEST_F(AccountTest, BindsToPaths) {
    EXPECT_HRESULT(S_OK, BindToPath(L"dropbox://somebody/x", CreateAccount(Tests::Service::Token())))
        << "the path is not looked at when there is an account";
    Qorv::ComPtr<Qorv::IAFS_Name> root;
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->BindToPath(L"/", nullptr, 0, m_details, nullptr, &root));
    EXPECT_EQ(L"Cannot bind path with null context", m_details->Text());
    EXPECT_HRESULT(E_POINTER, m_file_system->BindToPath(L"/", nullptr, 0, m_details, nullptr, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->BindToObject(nullptr, nullptr, 0, m_details, nullptr, &root));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->BindToObject(m_root, nullptr, 0, m_details, nullptr, &root));
}

TEST_F(AccountTest, ARefusedTokenFailsTheBind) {
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_FAIL, m_file_system->CreateAccount(SavedAccount(L"refused"), m_details, nullptr, &account));
    EXPECT_EQ(nullptr, account);
    EXPECT_NE(std::wstring::npos, m_details->Text().find(L"invalid_access_token")) << ToUtf8(m_details->Text());
    EXPECT_TRUE(log.Has("Expression: \"BindToObject((Qorv::IAFS_AccountData*)account_data, bind_context, 0, "
                        "o_error_details, i_cancel_flag, &host_name)\" caused returning \"HRESULT 0x80004005: "));
}

TEST_F(AccountTest, Properties) {
    Qorv::Variant value;
    const Tests::LogCapture log;
    EXPECT_HRESULT(S_OK, m_file_system->get_Prop(m_root, L"username", &value));
    EXPECT_TRUE(log.Has("FileSystem::get_Prop<-- S_OK\n"));
    EXPECT_EQ(L"Ada Example", value.Text());
    EXPECT_HRESULT(S_OK, m_file_system->get_Prop(nullptr, L"Icon", &value));
    EXPECT_EQ(VT_UNKNOWN, value->vt);
    EXPECT_EQ(m_plugin->m_icon.Get(), value->punkVal);
    EXPECT_HRESULT(S_OK, m_file_system->get_Prop(NameOf(L"/missing"), L"accountdata", &value));
    ASSERT_EQ(VT_UNKNOWN, value->vt);
    const auto account = Qorv::ComPtr<IUnknown>(value->punkVal).As<Qorv::IAFS_AccountData>();
    Qorv::Bstr user_name;
    EXPECT_HRESULT(S_OK, account->get_UserName(&user_name));
    EXPECT_EQ(L"Ada Example", user_name.View());
    const auto saved = Qorv::Create<DevHost::CabNode>();
    EXPECT_HRESULT(S_OK, account->SaveTo(saved));
    Qorv::ComPtr<Qorv::IAFS_Name> root;
    EXPECT_HRESULT(S_OK, m_file_system->BindToObject(account, nullptr, 0, m_details, nullptr, &root))
        << "its token is the session's";
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->get_Prop(nullptr, L"AccountData", &value));
    EXPECT_HRESULT(E_NOTIMPL, m_file_system->get_Prop(m_root, L"Size", &value));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->get_Prop(NameOf(L"/missing"), L"UserName", &value));

    const Qorv::Variant key{Qorv::Bstr(L"key")};
    EXPECT_HRESULT(S_OK, m_file_system->put_Prop(m_root, L"communicationkey", key));
    EXPECT_HRESULT(E_NOTIMPL, m_file_system->put_Prop(m_root, L"UserName", key));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->put_Prop(nullptr, L"CommunicationKey", key));
    EXPECT_HRESULT(E_INVALIDARG, m_file_system->put_Prop(m_root, L"CommunicationKey", Qorv::Variant(LONG{1})));
}

TEST_F(AccountTest, FixedAnswers) {
    Qorv::Bstr text;
    EXPECT_HRESULT(S_OK, m_file_system->get_Name(&text));
    EXPECT_EQ(L"Dropbox", text.View());
    EXPECT_HRESULT(S_OK, m_file_system->get_DispName(&text));
    EXPECT_EQ(L"Dropbox", text.View());
    ULONG features = 0;
    EXPECT_HRESULT(S_OK, m_file_system->get_Features(&features));
    EXPECT_EQ(0x3000A7FFU, features);
    EXPECT_HRESULT(E_NOTIMPL, m_file_system->Exec(m_root, L"x", nullptr));
    EXPECT_HRESULT(E_NOTIMPL, m_file_system->GetVolumeSpace(m_root, nullptr, nullptr));
    EXPECT_HRESULT(E_NOTIMPL, m_file_system->Reserved1());
    EXPECT_HRESULT(S_FALSE, m_file_system->SetProgressMon(nullptr));
    EXPECT_HRESULT(S_FALSE, m_file_system->GetProgressMon(nullptr));
    EXPECT_HRESULT(S_OK, m_file_system->BindClose(nullptr, nullptr, nullptr));
    Qorv::ComPtr<Qorv::IAUX_CabNode> parameters;
    EXPECT_HRESULT(S_OK, m_file_system->CreateDlgParams(Qorv::AFS_Dlg_OpenFiles, &parameters));
    EXPECT_NE(nullptr, parameters);
}

// The service may answer anything: only what can be understood reaches the log and the user.
TEST_F(AccountTest, AnAnswerThatIsNoneIsToldInWords) {
    const struct {
        const char* call;
        const char* body;
        std::function<HRESULT()> run;
        const wchar_t* told;
        const char* logged;
    } cases[] = {
        {"users/get_current_account", R"({\"account_id\": 7})", [this] { return BindAgain(); },
         L"The service's answer about the account cannot be understood", "caused throwing \"IsString()\""},
        {"files/get_metadata", "<html>", [this] { return m_file_system->Delete(NameOf(L"/a"), m_details, nullptr); },
         L"The service's answer about the item cannot be understood", "caused throwing \"JSON document parse error: "},
        {"files/create_folder", "{}", [this] { return m_file_system->CreateFolder(NameOf(L"/a"), m_details, nullptr); },
         L"The service's answer about the new folder cannot be understood", "The service's reply has no \"name\""},
        {"files/list_folder", "[]",
         [this] {
             Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
             return m_file_system->EnumFolder(m_root, m_details, nullptr, &children);
         },
         L"The service's answer about the folder cannot be understood", "caused throwing \"IsObject()\""},
    };
    for (const auto& [call, body, run, told, logged] : cases) {
        Tests::Service::AddFault(R"({"path": "2/)" + std::string(call) + R"(", "body": ")" + body + "\"}");
        const Tests::LogCapture log;
        EXPECT_HRESULT(E_FAIL, run()) << call;
        EXPECT_EQ(told, m_details->Text()) << call;
        EXPECT_TRUE(log.Has(logged)) << call << log.Messages();
    }
}

// A gateway may repeat what it was sent.
TEST_F(AccountTest, NobodyReadsTheToken) {
    const std::string token = ToUtf8(Tests::Service::Token());
    Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "status": 403, "reason": "No )" + token +
                             R"(", "headers": {"X-Sent": "Bearer )" + token +
                             R"("}, "body": "{\"error_summary\": \"who is )" + token + R"(?\"}"})");
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_FAIL, m_file_system->Delete(NameOf(L"/a"), m_details, nullptr));
    EXPECT_EQ(L"HTTP 403: No *** (who is ***?)", m_details->Text());
    EXPECT_TRUE(log.Has("X-Sent: Bearer ***\n"));
    EXPECT_FALSE(log.Has(token));

    Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "status": 403, "body": "{\"error_summary\": \")" +
                             std::string(295, 'x') + token + R"(\"}"})");
    EXPECT_HRESULT(E_FAIL, m_file_system->Delete(NameOf(L"/a"), m_details, nullptr));
    EXPECT_TRUE(m_details->Text().ends_with(L"xxx***)")) << "the beginning of a token that is cut off";
}

// `Unload` runs on the main thread, whatever the other threads do.
TEST_F(AccountTest, OperationsBesideAnUnloadEndInACode) {
    Qorv::IAFS_FileSys* const fs = m_file_system;
    const auto account = CreateAccount(Tests::Service::Token());
    const auto cab = Qorv::Create<DevHost::CabNode>();
    const std::function<HRESULT()> operations[] = {
        [fs] {
            Qorv::Bstr text;
            return fs->get_DispName(&text);
        },
        [fs] {
            Qorv::ComPtr<IUnknown> icon;
            return fs->get_Icon(&icon);
        },
        [fs] {
            Qorv::ComPtr<Qorv::IAUX_CabNode> parameters;
            return fs->CreateDlgParams(Qorv::AFS_Dlg_OpenFiles, &parameters);
        },
        [account, cab] { return account->SaveTo(cab); },
    };
    std::atomic<int> running{0};
    std::vector<std::thread> workers;
    for (const auto& operation : operations)
        workers.emplace_back([&operation, &running] {
            ++running;
            HRESULT result = S_OK;
            while (SUCCEEDED(result))
                result = operation();
            EXPECT_HRESULT(E_UNEXPECTED, result);
        });
    while (running != static_cast<int>(workers.size()))
        Sleep(1);
    Sleep(20);
    EXPECT_HRESULT(S_OK, m_plugin->Unload());
    for (auto& worker : workers)
        worker.join();
}

TEST_F(AccountTest, UnloadingWhileObjectsAreHeld) {
    Tests::WriteBytes(Tests::Service::LocalPath(L"/a"), "a");
    const auto account = CreateAccount(Tests::Service::Token());
    const auto file = Opened(L"/a", Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write);
    Tests::WriteAll(file, "changed");
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
    EXPECT_HRESULT(S_OK, m_file_system->EnumFolder(m_root, nullptr, nullptr, &children));
    Unload();

    Qorv::ComPtr<Qorv::IAFS_Name> name;
    Qorv::Bstr text;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_UNEXPECTED, m_file_system->BindToObject(account, nullptr, 0, nullptr, nullptr, &name));
    EXPECT_TRUE(log.Has("Expression: \"m_plugin != nullptr\" caused returning \"HRESULT 0x8000ffff: "));
    EXPECT_HRESULT(E_UNEXPECTED, m_file_system->get_DispName(&text));
    EXPECT_HRESULT(E_UNEXPECTED, account->SaveTo(Qorv::Create<DevHost::CabNode>()));
    EXPECT_EQ(Location(L""), TextOf(m_root));
    Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item;
    EXPECT_HRESULT(S_OK, children->Next(&item));
    EXPECT_EQ("a", Tests::ReadBytes(Tests::Service::LocalPath(L"/a"))) << "nothing was closed, so nothing was sent";
}

} // namespace
