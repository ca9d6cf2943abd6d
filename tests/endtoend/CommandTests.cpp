// The host's commands through the shipped module, where they must replace and lose nothing.

#include "ShippedModule.h"

#include "commands/Shell.h"
#include "support/DevService.h"

#include <gtest/gtest.h>

#include <ole2.h>

namespace Tests {
namespace {

namespace fs = std::filesystem;

class CommandTest : public ServiceTest {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        DevHost::Options options;
        options.profile = m_folder.Path() / "profile";
        options.module = ModulePath();
        m_shell.emplace(options, Qorv::Create<DevHost::CancelFlag>());
        ASSERT_EQ(Run({L"login", L"--token", Service::Token()}), 0);
        ASSERT_EQ(Run({L"login", L"--token", Service::Token(Service::Account::Second)}), 0);
    }
    void TearDown() override {
        Service::ClearFaults();
        EXPECT_TRUE(!m_shell || m_shell->Finish() == 0);
        m_shell.reset();
        OleUninitialize();
    }

    int Run(const DevHost::Arguments& i_words) { return m_shell->Execute(DevHost::CommandLine(i_words)); }

    std::vector<DevHost::KeptFile> Kept() { return m_shell->Plugin().Cache().Kept(); }

    fs::path LocalFile() const { return m_folder.Path() / "local.pdf"; }

    TemporaryFolder m_folder;
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

} // namespace
} // namespace Tests
