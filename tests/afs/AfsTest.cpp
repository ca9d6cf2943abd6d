#include "AfsTest.h"

#include "afs/FileSystem.h"
#include "dropbox/SharePoint.h"
#include "support/Environments.h"

namespace {
const auto* const log_environment = testing::AddGlobalTestEnvironment(new Tests::LogEnvironment);
const auto* const service_environment = testing::AddGlobalTestEnvironment(new Tests::ServiceEnvironment);
} // namespace

namespace Tests {

AfsTest::AfsTest() : m_objects_before(Qorv::g_live_objects) {
    OleInitialize(nullptr);
    m_details = Qorv::Create<DevHost::ErrorDetails>();
    m_canceled = Qorv::Create<DevHost::CancelFlag>();
    m_canceled->Cancel();
    m_host = Qorv::Create<DevHost::MainInstance>(
        m_profile.Path(), [this](const std::wstring& i_notice) { m_notices.push_back(i_notice); });
    m_plugin = Qorv::Create<Plugin>();
    Qorv::ComPtr<Qorv::IAUX_CryptKey> key;
    m_host->GetCryptKey(m_plugin, VARIANT_TRUE, &key);
    EXPECT_HRESULT(S_OK, m_plugin->Setup(m_host));
    EXPECT_HRESULT(S_OK, m_plugin->RegisterExts());
    EXPECT_HRESULT(S_OK, m_plugin->FinalizeRegistering());
    EXPECT_HRESULT(S_OK, m_plugin->Init());
    m_file_system = m_host->FileSystems().Find(L"Dropbox");
    m_root = Bind(Service::Token());
    if (const auto root = Qorv::OwnObject<Name>(m_root); root != nullptr)
        m_user_id = root->GetObject()->GetWeb()->GetUserInformation()._id;
    Service::ClearRequests();
}

AfsTest::~AfsTest() {
    m_root.Reset();
    Unload();
    m_file_system.Reset();
    m_details.Reset();
    m_canceled.Reset();
    m_host.Reset();
    EXPECT_EQ(m_objects_before, Qorv::g_live_objects.load()) << "an object was not released";
    OleUninitialize();
}

void AfsTest::Unload() {
    if (m_plugin == nullptr)
        return;
    EXPECT_HRESULT(S_OK, m_plugin->Unload());
    m_host->Close();
    m_plugin.Reset();
}

Qorv::ComPtr<Qorv::IAUX_CabNode> AfsTest::SavedAccount(const std::wstring& i_token, const std::wstring& i_user_id) {
    auto cab = Qorv::Create<DevHost::CabNode>();
    cab->Member(L"Token")->SetValue(i_token);
    cab->Member(L"UserId")->SetValue(i_user_id);
    return cab;
}

Qorv::ComPtr<Qorv::IAFS_AccountData> AfsTest::CreateAccount(const std::wstring& i_token) {
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    EXPECT_HRESULT(S_OK, m_file_system->CreateAccount(SavedAccount(i_token), m_details, nullptr, &account));
    return account;
}

Qorv::ComPtr<Qorv::IAFS_Name> AfsTest::Bind(const std::wstring& i_token) {
    const auto account = CreateAccount(i_token);
    Qorv::ComPtr<Qorv::IAFS_Name> root;
    EXPECT_HRESULT(S_OK, m_file_system->BindToObject(account, nullptr, 0, m_details, nullptr, &root));
    return root;
}

Qorv::ComPtr<Qorv::IAFS_Name> AfsTest::NameOf(const std::wstring& i_path) {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    EXPECT_HRESULT(S_OK, m_file_system->StringToName(i_path.c_str(), 0, m_root, &name));
    return name;
}

std::wstring AfsTest::TextOf(Qorv::IAFS_Name* i_name, ULONG i_flags, Qorv::IAFS_Name* i_parent) {
    Qorv::Bstr text;
    EXPECT_HRESULT(S_OK, m_file_system->NameToString(i_name, i_flags, i_parent, &text));
    return std::wstring(text.View());
}

HRESULT AfsTest::Open(Qorv::IAFS_Name* i_name, ULONG i_flags, Qorv::ComPtr<Qorv::IAFS_File>& o_file) {
    m_details = Qorv::Create<DevHost::ErrorDetails>();
    return m_file_system->OpenFile(i_name, i_flags, m_details, nullptr, &o_file);
}

Qorv::ComPtr<Qorv::IAFS_File> AfsTest::Opened(const std::wstring& i_path, ULONG i_flags) {
    Qorv::ComPtr<Qorv::IAFS_File> file;
    EXPECT_HRESULT(S_OK, Open(NameOf(i_path), i_flags, file)) << ToUtf8(m_details->Text());
    return file;
}

std::size_t AfsTest::Calls(const std::string& i_call) {
    std::size_t count = 0;
    for (const Service::Request& request : Service::Requests())
        count += request.line.starts_with("POST /2/" + i_call + " ") ? 1U : 0U;
    return count;
}

std::string ReadAll(Qorv::IAFS_File* i_file) {
    std::string bytes;
    std::vector<char> piece(100'000);
    for (ULONG read = 0;; bytes.append(piece.data(), read)) {
        EXPECT_HRESULT(S_OK, i_file->Read(piece.data(), static_cast<ULONG>(piece.size()), &read, nullptr, nullptr));
        if (read == 0)
            return bytes;
    }
}

void WriteAll(Qorv::IAFS_File* i_file, const std::string& i_bytes) {
    ULONG written = 0;
    EXPECT_HRESULT(S_OK, i_file->Write(i_bytes.data(), static_cast<ULONG>(i_bytes.size()), &written, nullptr, nullptr));
    EXPECT_EQ(i_bytes.size(), written);
}

} // namespace Tests
