// The main job through the shipped module: bind an account, list, open, change, save, against the folder that the
// service serves; and the module's log.

#include "ShippedModule.h"

#include "base/Unicode.h"
#include "host/PluginHost.h"
#include "qorv/Values.h"
#include "services/CabNode.h"
#include "services/ErrorDetails.h"
#include "support/Content.h"
#include "support/DevService.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "wine/WineNetwork.h"

#include <gtest/gtest.h>

#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace Tests {
namespace {

/// This program calls WinINet only through the module, whose imports the host redirects on loading.
class WinInetEnvironment final : public testing::Environment {
public:
    void SetUp() override { DevHost::RedirectWinInet(); }
};
const auto* const wininet_environment = testing::AddGlobalTestEnvironment(new WinInetEnvironment);

using Qorv::ComPtr;

class MainJobTest : public ServiceTest {
protected:
    MainJobTest() { OleInitialize(nullptr); }
    ~MainJobTest() override {
        m_root.Reset();
        if (m_host.has_value()) {
            EXPECT_NO_THROW(m_host->Unload());
        }
        m_host.reset();
        OleUninitialize();
    }

    void Load() {
        m_host.emplace(m_profile.Path(), ModulePath(), [](const std::wstring&) {});
        const auto cab = Qorv::Create<DevHost::CabNode>();
        cab->Member(L"Token")->SetValue(Service::Token());
        ComPtr<Qorv::IAFS_AccountData> account;
        ASSERT_HRESULT_SUCCEEDED(m_host->FileSystem().CreateAccount(cab, nullptr, nullptr, &account));
        ASSERT_HRESULT_SUCCEEDED(m_host->FileSystem().BindToObject(account, nullptr, 0, nullptr, nullptr, &m_root));
    }

    ComPtr<Qorv::IAFS_Name> NameOf(const wchar_t* i_path) {
        ComPtr<Qorv::IAFS_Name> name;
        EXPECT_HRESULT(S_OK, m_host->FileSystem().StringToName(i_path, 0, m_root, &name));
        return name;
    }

    std::set<std::wstring> Titles(const wchar_t* i_path) {
        std::set<std::wstring> titles;
        ComPtr<Qorv::IAFS_EnumFolder> folder;
        EXPECT_HRESULT(S_OK, m_host->FileSystem().EnumFolder(NameOf(i_path), nullptr, nullptr, &folder));
        ComPtr<Qorv::IAFS_EnumFolderItem> item;
        while (folder != nullptr && folder->Next(&item) == S_OK) {
            ComPtr<Qorv::IAFS_Name> name;
            ComPtr<Qorv::IAFS_FileInfo> information;
            Qorv::Bstr title;
            EXPECT_HRESULT(S_OK, item->get_Name(&name));
            EXPECT_HRESULT(S_OK, m_host->FileSystem().GetFileInfo(name, nullptr, nullptr, &information));
            EXPECT_HRESULT(S_OK, information->get_Title(&title));
            titles.emplace(title.View());
        }
        return titles;
    }

    ComPtr<Qorv::IAFS_File> Open(const wchar_t* i_path, ULONG i_flags) {
        ComPtr<Qorv::IAFS_File> file;
        EXPECT_HRESULT(S_OK, m_host->FileSystem().OpenFile(NameOf(i_path), i_flags, nullptr, nullptr, &file));
        return file;
    }

    TemporaryFolder m_profile;
    std::optional<DevHost::PluginHost> m_host;
    ComPtr<Qorv::IAFS_Name> m_root;
};

TEST_F(MainJobTest, DocumentIsOpenedChangedAndSavedBack) {
    std::filesystem::create_directories(Service::LocalPath(L"/Documents"));
    const std::string before = RandomBytes(200'000);
    WriteBytes(Service::LocalPath(L"/Documents/Übersicht.pdf"), before);
    WriteBytes(Service::LocalPath(L"/Documents/世界.txt"), "");
    Load();
    EXPECT_EQ(Titles(L"/Documents"), (std::set<std::wstring>{L"Übersicht.pdf", L"世界.txt"}));

    const auto file = Open(L"/Documents/Übersicht.pdf", Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write);
    std::string read(before.size(), '\0');
    ULONG count = 0;
    EXPECT_HRESULT(S_OK, file->Read(read.data(), static_cast<ULONG>(read.size()), &count, nullptr, nullptr));
    EXPECT_EQ(Sha256(before), Sha256(read));

    EXPECT_HRESULT(S_OK, file->SetPos(100'000, Qorv::AFS_Origin_Begin));
    EXPECT_HRESULT(S_OK, file->Write("changed", 7, &count, nullptr, nullptr));
    EXPECT_EQ(before, ReadBytes(Service::LocalPath(L"/Documents/Übersicht.pdf"))) << "nothing is sent before the close";
    EXPECT_HRESULT(S_OK, file->Close(nullptr, nullptr));
    std::string after = before;
    after.replace(100'000, 7, "changed");
    EXPECT_EQ(Sha256(after), Sha256(ReadBytes(Service::LocalPath(L"/Documents/Übersicht.pdf"))));
}

TEST_F(MainJobTest, LogHasEveryLineInItsFormAndNoToken) {
    const TemporaryFolder folder;
    const TemporaryVariable temporary(L"TMP", folder.Path().wstring());
    {
        const LogSwitch log_to_file(2);
        Load();
    }
    EXPECT_TRUE(Titles(L"/").empty());
    ComPtr<Qorv::IAFS_File> file;
    const auto details = Qorv::Create<DevHost::ErrorDetails>();
    const ULONG flags = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_OpenExisting;
    EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
                   m_host->FileSystem().OpenFile(NameOf(L"/missing.pdf"), flags, details, nullptr, &file));
    m_root.Reset();
    m_host->Unload();

    const std::string log = ReadBytes(folder.Path() / "Qorvx-Dropbox.log");
    EXPECT_EQ(log.find(DevHost::ToUtf8(Service::Token())), std::string::npos);
    for (const char* text : {"Plugin::Setup--> \n", "Plugin::Setup<-- S_OK\n", "FileSystem::OpenFile--> \n",
                             "\"path/not_found/", "caused returning \"HRESULT 0x80070002: "})
        EXPECT_NE(log.find(text), std::string::npos) << text;

    // A failure's text may span several lines; a line that begins with a year starts a new entry.
    const std::regex head(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\|[ 0-9a-f]{3,}[0-9a-f]\|\S+(-->|<--)? [^\n]*)");
    std::istringstream lines(log);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("20")) {
            ++count;
            EXPECT_TRUE(std::regex_match(line, head)) << line;
        }
    EXPECT_GT(count, 100u);
}

} // namespace
} // namespace Tests
