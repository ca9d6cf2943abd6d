// The host's commands through the shipped module, where they must replace and lose nothing.

#include "ShippedModule.h"

#include "commands/Shell.h"
#include "support/DevService.h"

#include <gtest/gtest.h>

#include <ole2.h>

#include <sstream>
#include <thread>

namespace Tests {
namespace {

namespace fs = std::filesystem;

class CommandTest : public ServiceTest {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        m_shell.emplace(MakeOptions(), m_cancel_flag);
        ASSERT_EQ(Run({L"login", L"--token", Service::Token()}), 0);
        ASSERT_EQ(Run({L"login", L"--token", Service::Token(Service::Account::Second)}), 0);
    }
    void TearDown() override {
        Service::ClearFaults();
        EXPECT_TRUE(!m_shell || m_shell->Finish() == 0);
        m_shell.reset();
        OleUninitialize();
    }

    DevHost::Options MakeOptions() const {
        DevHost::Options options;
        options.profile = m_folder.Path() / "profile";
        options.module = ModulePath();
        return options;
    }

    /// What a command writes to one of the standard streams.
    std::string Written(DWORD i_stream, const DevHost::Arguments& i_words) {
        const fs::path file = m_folder.Path() / "written";
        const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        const HANDLE usual = GetStdHandle(i_stream);
        SetStdHandle(i_stream, handle);
        Run(i_words);
        SetStdHandle(i_stream, usual);
        CloseHandle(handle);
        return ReadBytes(file);
    }

    int Run(const DevHost::Arguments& i_words) { return m_shell->Execute(DevHost::CommandLine(i_words)); }

    std::vector<DevHost::KeptFile> Kept() { return m_shell->Plugin().Cache().Kept(); }

    fs::path LocalFile() const { return m_folder.Path() / "local.pdf"; }

    TemporaryFolder m_folder;
    Qorv::ComPtr<DevHost::CancelFlag> m_cancel_flag = Qorv::Create<DevHost::CancelFlag>();
    std::optional<DevHost::Shell> m_shell;
};

TEST_F(CommandTest, ReplacesNothingInAnotherAccount) {
    const std::wstring second = L"dropbox://" + m_shell->Accounts().List().at(1).id + L"/target.pdf";
    WriteBytes(Service::LocalPath(L"/source.pdf"), "new");
    WriteBytes(LocalFile(), "precious");
    ASSERT_EQ(Run({L"put", LocalFile().wstring(), second}), 0);
    for (const wchar_t* const command : {L"cp", L"mv"})
        EXPECT_EQ(Run({command, L"/source.pdf", second}), DevHost::exit_failed);
    EXPECT_EQ(ReadBytes(Service::LocalPath(L"/source.pdf")), "new");
    ASSERT_EQ(Run({L"get", second, LocalFile().wstring()}), 0);
    EXPECT_EQ(ReadBytes(LocalFile()), "precious");
    ASSERT_EQ(Run({L"rm", second}), 0);
    EXPECT_EQ(Run({L"mv", L"/source.pdf", second}), 0);
    EXPECT_FALSE(fs::exists(Service::LocalPath(L"/source.pdf")));
    ASSERT_EQ(Run({L"get", second, LocalFile().wstring()}), 0);
    EXPECT_EQ(ReadBytes(LocalFile()), "new");
    EXPECT_EQ(Run({L"rm", second}), 0);
}

TEST_F(CommandTest, KeepsNoCopyOfAFileThatCannotBePut) {
    WriteBytes(LocalFile(), "mine");
    Service::AddFault(R"({"path": "2/files/upload", "status": 500})");
    EXPECT_EQ(Run({L"put", LocalFile().wstring(), L"/a.pdf"}), DevHost::exit_failed);
    EXPECT_TRUE(Kept().empty());
    EXPECT_EQ(ReadBytes(LocalFile()), "mine");
    Service::ClearFaults();
    EXPECT_EQ(Run({L"put", LocalFile().wstring(), L"/" + std::wstring(300, L'n') + L".pdf"}), DevHost::exit_failed);
    EXPECT_TRUE(Kept().empty()) << "no such name can ever be sent";
}

TEST_F(CommandTest, DealsWithWhatIsKept) {
    const std::wstring second = L"dropbox://" + m_shell->Accounts().List().at(1).id + L"/kept.pdf";
    WriteBytes(Service::LocalPath(L"/source.pdf"), "bytes");
    Service::AddFault(R"({"path": "2/files/upload", "status": 500, "times": 0})");
    EXPECT_EQ(Run({L"cp", L"/source.pdf", second}), DevHost::exit_failed);
    ASSERT_EQ(Kept().size(), 1u);
    const std::wstring id = Kept().front().Id();
    EXPECT_EQ(Run({L"kept"}), 0);
    EXPECT_EQ(Run({L"kept", L"drop", L"no such"}), DevHost::exit_failed);
    EXPECT_EQ(Run({L"kept", L"send", id}), DevHost::exit_failed);
    ASSERT_EQ(Kept().size(), 1u) << "a failed send loses nothing";
    EXPECT_EQ(Run({L"kept", L"save", id, LocalFile().wstring()}), 0);
    EXPECT_EQ(ReadBytes(LocalFile()), "bytes");
    EXPECT_EQ(Run({L"kept", L"save", id, LocalFile().wstring()}), DevHost::exit_failed) << "replaces nothing";
    Service::ClearFaults();
    EXPECT_EQ(Run({L"kept", L"send", id}), 0);
    EXPECT_TRUE(Kept().empty());
    fs::remove(LocalFile());
    ASSERT_EQ(Run({L"get", second, LocalFile().wstring()}), 0);
    EXPECT_EQ(ReadBytes(LocalFile()), "bytes");
    EXPECT_EQ(Run({L"rm", second}), 0);
}

TEST_F(CommandTest, DownloadsIntoAFolder) {
    WriteBytes(Service::LocalPath(L"/a.pdf"), "bytes");
    const fs::path folder = m_folder.Path() / "downloads";
    fs::create_directory(folder);
    EXPECT_EQ(Run({L"get", L"/a.pdf", folder.wstring()}), 0);
    EXPECT_EQ(ReadBytes(folder / "a.pdf"), "bytes");
    EXPECT_EQ(Run({L"get", L"/a.pdf", folder.wstring() + L"/"}), 0) << "replaces the file";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
    const std::string message =
        Written(STD_ERROR_HANDLE, {L"get", L"/a.pdf", (m_folder.Path() / "missing" / "a.pdf").wstring()});
    EXPECT_NE(message.find("missing\\a.pdf: "), std::string::npos) << message;
}

TEST_F(CommandTest, SaysWhatKindOfItemIsThere) {
    fs::create_directory(Service::LocalPath(L"/Folder"));
    WriteBytes(Service::LocalPath(L"/a.pdf"), "bytes");
    for (const DevHost::Arguments& words :
         {DevHost::Arguments{L"get", L"/Folder", LocalFile().wstring()}, {L"cat", L"/Folder"}}) {
        const std::string message = Written(STD_ERROR_HANDLE, words);
        EXPECT_TRUE(message.starts_with("qorvhost: /Folder is a folder")) << message;
    }
    const std::string message = Written(STD_ERROR_HANDLE, {L"ls", L"/a.pdf"});
    EXPECT_TRUE(message.starts_with("qorvhost: /a.pdf is a file")) << message;
    EXPECT_EQ(Run({L"rename", L"/a.pdf", L"Folder/a.pdf"}), DevHost::exit_failed);
    EXPECT_TRUE(fs::exists(Service::LocalPath(L"/a.pdf")));
}

TEST_F(CommandTest, ListsAsTheDialogsDo) {
    for (const wchar_t* const name : {L"/Page 10.pdf", L"/page 2.pdf", L"/Page 1.pdf"})
        WriteBytes(Service::LocalPath(name), "");
    fs::create_directory(Service::LocalPath(L"/Zoo"));
    WriteBytes(Service::LocalPath(L"/Zoo/a.pdf"), "");
    const auto names = [&](const DevHost::Arguments& i_words) {
        std::istringstream lines(Written(STD_OUTPUT_HANDLE, i_words));
        std::string names_in_order;
        for (std::string line; std::getline(lines, line);)
            names_in_order += line.substr(line.find_first_of("PpZ")) + ";";
        return names_in_order;
    };
    EXPECT_EQ(names({L"ls"}), "Zoo/;Page 1.pdf;page 2.pdf;Page 10.pdf;");
    EXPECT_EQ(names({L"ls", L"-R"}), "Zoo/;Zoo/a.pdf;Page 1.pdf;page 2.pdf;Page 10.pdf;");
    Service::AddFault(R"({"path": "2/files/list_folder", "skip": 1, "status": 500})");
    EXPECT_EQ(names({L"ls", L"-R"}), "Zoo/;") << "what is known is written before the rest is read";
}

TEST_F(CommandTest, StopsWithoutATrace) {
    WriteBytes(Service::LocalPath(L"/big.pdf"), std::string(1 << 20, 'b'));
    WriteBytes(LocalFile(), "precious");
    Service::AddFault(R"({"path": "2/files/download", "real": true, "piece": 65536, "slow_body_ms": 100})");
    std::thread user([&] {
        while (std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator()) < 3)
            Sleep(1); // Until there is a file for the download.
        m_cancel_flag->Cancel();
    });
    EXPECT_EQ(Run({L"get", L"/big.pdf", LocalFile().wstring()}), DevHost::exit_interrupted);
    user.join();
    EXPECT_EQ(ReadBytes(LocalFile()), "precious");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.Path()), fs::directory_iterator()), 2)
        << "only the profile and the file that was there";
}

TEST_F(CommandTest, LeavesTheLogsSwitchAsItWas) {
    constexpr wchar_t key[] = L"Software\\Talvern Soft\\QorvEditor\\3.0\\Debug";
    DWORD level = 0;
    DWORD size = sizeof level;
    const auto read = [&] {
        return RegGetValueW(HKEY_CURRENT_USER, key, L"DropboxLog", RRF_RT_REG_DWORD, nullptr, &level, &size);
    };
    const LSTATUS before = read();
    DevHost::Options options = MakeOptions();
    options.trace = 1;
    m_shell->Finish();
    m_shell.emplace(options, m_cancel_flag);
    EXPECT_EQ(Run({L"info"}), 0);
    EXPECT_EQ(read(), before);
    DWORD own_level = 0;
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"DropboxLog", REG_DWORD, &own_level, sizeof own_level);
    EXPECT_EQ(Run({L"info"}), 0);
    EXPECT_EQ(read(), ERROR_SUCCESS);
    EXPECT_EQ(level, own_level);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key, L"DropboxLog");
}

} // namespace
} // namespace Tests
