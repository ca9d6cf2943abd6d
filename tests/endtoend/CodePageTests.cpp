// Names of every kind through the shipped module, on systems with several code pages, against the folder that the
// service serves. A program's manifest sets its code page, so each is a copy of this program with another manifest.

#include "ShippedModule.h"

#include "base/Unicode.h"
#include "commands/Shell.h"
#include "support/DevService.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <process.h>
#include <random>

namespace Tests {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t code_page_variable[] = L"CODE_PAGE_UNDER_TEST";
constexpr wchar_t child_filter[] = L"--gtest_filter=NamesTest.*";

/// The copy has no other resources: these tests open no windows.
fs::path CopyProgramForLanguage(const fs::path& i_folder, const std::string& i_language) {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, DWORD{std::size(program)});
    const fs::path copy = i_folder / (i_language + ".exe");
    fs::copy_file(program, copy);
    std::string manifest = R"(<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">)"
                           R"(<application xmlns="urn:schemas-microsoft-com:asm.v3"><windowsSettings>)"
                           R"(<activeCodePage xmlns="http://schemas.microsoft.com/SMI/2019/WindowsSettings">)" +
                           i_language + "</activeCodePage></windowsSettings></application></assembly>";
    const HANDLE update = BeginUpdateResourceW(copy.c_str(), TRUE);
    EXPECT_TRUE(UpdateResourceW(update, RT_MANIFEST, MAKEINTRESOURCEW(1), 0, manifest.data(),
                                static_cast<DWORD>(manifest.size())));
    EXPECT_TRUE(EndUpdateResourceW(update, FALSE));
    return copy;
}

TEST(CodePageTest, NamesReachTheirFilesOnEverySystem) {
    const struct {
        const char* language; // The code page's name in a manifest.
        UINT code_page;
    } rows[] = {{"ja-JP", 932}, {"zh-CN", 936}, {"UTF-8", CP_UTF8}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.language);
        const TemporaryFolder folder;
        const fs::path program = CopyProgramForLanguage(folder.Path(), row.language);
        const TemporaryVariable code_page(code_page_variable, std::to_wstring(row.code_page));
        const TemporaryVariable no_premature_exit(L"TEST_PREMATURE_EXIT_FILE", L"");
        EXPECT_EQ(_wspawnl(_P_WAIT, program.c_str(), program.c_str(), child_filter, nullptr), 0);
    }
}

/// Run by the copies, and by this program on the machine's own code page.
class NamesTest : public ServiceTest {
protected:
    void SetUp() override {
        if (const std::wstring code_page = Variable(code_page_variable); !code_page.empty()) {
            ASSERT_EQ(std::to_wstring(GetACP()), code_page);
        }
        OleInitialize(nullptr);
        SetStdHandle(STD_OUTPUT_HANDLE, m_nowhere); // Hundreds of lines that nobody reads.
        DevHost::Options options;
        options.profile = m_folder.Path() / "profile";
        options.module = ModulePath();
        m_shell.emplace(options, m_cancel_flag);
        ASSERT_EQ(Run({L"login", L"--token", Service::Token()}), 0);
    }
    void TearDown() override {
        EXPECT_TRUE(!m_shell || m_shell->Finish() == 0);
        m_shell.reset();
        SetStdHandle(STD_OUTPUT_HANDLE, m_output);
        CloseHandle(m_nowhere);
        OleUninitialize();
    }

    int Run(const DevHost::Arguments& i_command) { return m_shell->Execute(DevHost::CommandLine(i_command)); }

    int Put(const std::wstring& i_path, const std::string& i_content) {
        WriteBytes(LocalFile(), i_content);
        return Run({L"put", LocalFile().wstring(), i_path});
    }
    std::string Get(const std::wstring& i_path) {
        WriteBytes(LocalFile(), "not read");
        return Run({L"get", i_path, LocalFile().wstring()}) == 0 ? ReadBytes(LocalFile()) : "failed";
    }

    /// The account's files: names and contents.
    static std::map<std::wstring, std::string> Account() {
        std::map<std::wstring, std::string> files;
        for (const auto& entry : fs::directory_iterator(Service::LocalPath(L"/")))
            files[entry.path().filename().wstring()] = ReadBytes(entry.path());
        return files;
    }

    fs::path LocalFile() const { return m_folder.Path() / "local"; }

    const HANDLE m_output = GetStdHandle(STD_OUTPUT_HANDLE);
    const HANDLE m_nowhere = CreateFileW(L"NUL", GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    TemporaryFolder m_folder;
    Qorv::ComPtr<DevHost::CancelFlag> m_cancel_flag = Qorv::Create<DevHost::CancelFlag>();
    std::optional<DevHost::Shell> m_shell;
};

using Files = std::map<std::wstring, std::string>;

/// The form in which the service keeps a name.
std::wstring Composed(const std::wstring& i_name) {
    wchar_t composed[512] = {};
    NormalizeString(NormalizationC, i_name.c_str(), -1, composed, static_cast<int>(std::size(composed)));
    return composed;
}

/// The name that the service reads if header text is sent in the machine's code page; empty for none.
std::wstring Likeness(const std::wstring& i_name) {
    char bytes[512] = {};
    wchar_t name[512] = {};
    WideCharToMultiByte(CP_ACP, 0, i_name.c_str(), -1, bytes, static_cast<int>(std::size(bytes)), nullptr, nullptr);
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes, -1, name, static_cast<int>(std::size(name)));
    // A character that the code page lacks becomes a question mark, which no file here can have.
    return std::wcspbrk(name, L"?*<>|:\"/\\") == nullptr ? name : L"";
}

std::wstring RandomName(std::mt19937& io_random) {
    const struct {
        char32_t first, last;
    } blocks[] = {{U'0', U'9'},     {U'A', U'Z'},     {U'#', U')'},     {0xA1, 0x17E},     {0x300, 0x333},
                  {0x410, 0x44F},   {0x5D0, 0x5EA},   {0x3041, 0x3096}, {0x30A1, 0x30FA},  {0x4E00, 0x9FA5},
                  {0xAC00, 0xD7A3}, {0xFF01, 0xFF5E}, {0x2010, 0x2027}, {0x1F600, 0x1F64F}};
    std::wstring name = L"n";
    for (auto count = 1 + io_random() % 16; count > 0; --count) {
        const auto& block = blocks[io_random() % std::size(blocks)];
        const char32_t code = block.first + io_random() % (block.last - block.first + 1);
        if (code > 0xFFFF)
            name += static_cast<wchar_t>(0xD7C0 + (code >> 10));
        name += static_cast<wchar_t>(code > 0xFFFF ? 0xDC00 + (code & 0x3FF) : code);
    }
    return name + L".pdf";
}

TEST_F(NamesTest, EachReachesExactlyItsFile) {
    std::vector<std::wstring> names = {L"CafÃ©.pdf", L"ä¸–ç•Œ.txt",   L"表.pdf",       L"世界.pdf",     L"e\u0301.pdf",
                                       L"ﬁ ß.pdf",   L"\xD83D\xDE00", L"%41 {} #.pdf", L"a\u200db.pdf", L"鈥溿€.pdf"};
    std::mt19937 random(GetACP());
    while (names.size() < 60)
        names.push_back(RandomName(random));
    for (const std::wstring& name : names) {
        SCOPED_TRACE(DevHost::ToUtf8(name));
        Files account = {{Composed(name), "first"}};
        if (const std::wstring likeness = Likeness(name); !likeness.empty() && likeness != name) {
            WriteBytes(Service::LocalPath(L"/" + likeness), "the likeness");
            account[likeness] = "the likeness";
        }
        ASSERT_EQ(Put(L"/" + name, "first"), 0);
        ASSERT_EQ(Account(), account);
        EXPECT_EQ(Run({L"stat", L"/" + name}), 0);
        EXPECT_EQ(Get(L"/" + name), "first");

        const std::wstring new_name = RandomName(random);
        ASSERT_EQ(Run({L"rename", L"/" + name, new_name}), 0);
        ASSERT_EQ(Put(L"/" + new_name, "second"), 0);
        EXPECT_EQ(Get(L"/" + new_name), "second");
        account.erase(Composed(name));
        account[Composed(new_name)] = "second";
        ASSERT_EQ(Account(), account);

        ASSERT_EQ(Run({L"rm", L"/" + new_name}), 0);
        account.erase(Composed(new_name));
        EXPECT_EQ(Account(), account);
        for (const auto& [left, content] : account)
            fs::remove(Service::LocalPath(L"/" + left));
    }
}

TEST_F(NamesTest, ThoseThatCannotArriveAreRefusedBeforeAnythingIsSent) {
    using namespace std::string_literals;
    WriteBytes(Service::LocalPath(L"/important.pdf"), "important");
    Run({L"ls", L"/"});
    Service::ClearRequests();
    for (const std::wstring& name : {L"half\xD83D.pdf"s, L"\xDE00\xD83D.pdf"s, L"a\"b.pdf"s, L"a\\b.pdf"s, L"a\nb.pdf"s,
                                     L"x\",\"path\": \"/important.pdf"s, L"important\\u002epdf"s, L"half\\udc00"s}) {
        SCOPED_TRACE(DevHost::ToUtf8(name));
        EXPECT_NE(Put(L"/" + name, "new"), 0);
        EXPECT_NE(Run({L"mkdir", L"/" + name}), 0);
    }
    EXPECT_TRUE(Service::Requests().empty());
    EXPECT_EQ(Account(), (Files{{L"important.pdf", "important"}}));
}

} // namespace
} // namespace Tests
