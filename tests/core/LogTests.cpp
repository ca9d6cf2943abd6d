// The log: its switch, where its lines go, and their form.

#include "core/trace/LogFile.h"
#include "core/trace/Text.h"
#include "core/trace/Trace.h"
#include "qorv/Host.h"
#include "qorv/Values.h"
#include "support/Log.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <mutex>
#include <optional>
#include <regex>
#include <thread>

using namespace Tests;

namespace {

constexpr char line_head[] = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\|[ 0-9a-f]{4,}\|)";

std::vector<std::string> Lines(const std::string& i_text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < i_text.size();) {
        const std::size_t end = std::min(i_text.find('\n', start), i_text.size());
        lines.push_back(i_text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

/// Records what this process sends to a debugger while the object exists. One at a time.
class DebuggerOutput {
public:
    DebuggerOutput() : m_handler(AddVectoredExceptionHandler(1, &Collect)) { g_text.clear(); }
    ~DebuggerOutput() { RemoveVectoredExceptionHandler(m_handler); }
    DebuggerOutput(const DebuggerOutput&) = delete;
    DebuggerOutput& operator=(const DebuggerOutput&) = delete;

    static const std::wstring& Text() { return g_text; }

private:
    static LONG CALLBACK Collect(EXCEPTION_POINTERS* i_exception) {
        constexpr DWORD print = 0x40010006;      // DBG_PRINTEXCEPTION_C
        constexpr DWORD wide_print = 0x4001000A; // DBG_PRINTEXCEPTION_WIDE_C
        const EXCEPTION_RECORD& record = *i_exception->ExceptionRecord;
        if (record.ExceptionCode == print)
            g_text += FromUtf8(reinterpret_cast<const char*>(record.ExceptionInformation[1]));
        else if (record.ExceptionCode == wide_print)
            g_text += reinterpret_cast<const wchar_t*>(record.ExceptionInformation[1]);
        return EXCEPTION_CONTINUE_SEARCH;
    }

    static inline std::wstring g_text;
    void* m_handler;
};

/// Loads the module, asks the plug-in for its name, and frees both.
void UseModule() {
    const HMODULE module = LoadLibraryW(std::filesystem::absolute(PLUGIN_MODULE).c_str());
    ASSERT_NE(module, nullptr);
    const auto get_plugin = std::bit_cast<Qorv::GetPluginFunction>(GetProcAddress(module, Qorv::GetPluginName));
    ASSERT_NE(get_plugin, nullptr);
    EXPECT_EQ(get_plugin(nullptr, nullptr, nullptr), E_POINTER);
    Qorv::ComPtr<Qorv::IQorv_Plugin> plugin;
    EXPECT_EQ(get_plugin(nullptr, nullptr, &plugin), S_OK);
    Qorv::Bstr name;
    SetLastError(1234);
    EXPECT_EQ(plugin->get_Name(&name), S_OK);
    EXPECT_EQ(GetLastError(), 1234u) << "writing to the debugger changes it, and so may a write to the file";
    EXPECT_EQ(name.View(), L"Dropbox");
    plugin.Reset();
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(L"Dropbox.qvp"), nullptr) << "the module stays in the process";
}

TEST(LogTest, FollowsItsSwitch) {
    using namespace std::string_literals;
    struct {
        const char* name;
        DWORD type;
        std::string data;
        bool has_folder;
        bool writes_file;
        bool writes_to_debugger;
    } const rows[] = {
        {"0", REG_DWORD, "\0\0\0\0"s, true, false, false},
        {"1", REG_DWORD, "\1\0\0\0"s, true, false, true},
        {"2", REG_DWORD, "\2\0\0\0"s, true, true, false},
        {"more", REG_DWORD, "\xFF\xFF\xFF\xFF"s, true, true, false},
        {"2, but the file cannot be opened", REG_DWORD, "\2\0\0\0"s, false, false, true},
        {"text", REG_SZ, "2\0\0\0"s, true, false, false},
        {"64 bits", REG_QWORD, "\2\0\0\0\0\0\0\0"s, true, false, false},
        {"4 bytes of another type", REG_BINARY, "\2\0\0\0"s, true, false, false},
        {"too short", REG_DWORD, "\2\0"s, true, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const TemporaryFolder folder;
        const std::filesystem::path path = row.has_folder ? folder.Path() : folder.Path() / "missing";
        const std::filesystem::path file = path / "Qorvx-Dropbox.log";
        const TemporaryVariable temporary_folder(L"TMP", path.wstring());
        const LogSwitch log_switch(row.type, row.data);
        const DebuggerOutput debugger;

        UseModule();
        EXPECT_EQ(std::filesystem::exists(file), row.writes_file);
        EXPECT_EQ(debugger.Text().find(L"|DllMain<-- TRUE\n") != std::wstring::npos, row.writes_to_debugger);
        EXPECT_EQ(debugger.Text().empty(), !row.writes_to_debugger);
        if (row.writes_file) {
            const std::size_t size = std::filesystem::file_size(file);
            UseModule();
            EXPECT_EQ(std::filesystem::file_size(file), size) << "each load begins the file anew";
        }
    }
}

TEST(LogTest, IsOffWithoutASwitch) {
    const TemporaryFolder folder;
    const TemporaryVariable temporary_folder(L"TMP", folder.Path().wstring());
    const DebuggerOutput debugger;
    UseModule();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_EQ(debugger.Text(), L"");
}

TEST(LogTest, WritesALineForEachEntryAndExit) {
    const TemporaryFolder folder;
    const TemporaryVariable temporary_folder(L"TMP", folder.Path().wstring());
    const LogSwitch log_switch(2);
    UseModule();
    const std::string text = ReadBytes(folder.Path() / "Qorvx-Dropbox.log");
    EXPECT_EQ(text.find('\r'), text.find("\r\n\"\n")) << "lines end with a line feed alone";
    const std::string messages = WithoutHeads(text);
    const std::size_t sentence = messages.find("Qorce_GetPlugin<-- Expression: \"output_plugin != nullptr\" caused "
                                               "returning \"HRESULT 0x80004003: ");
    EXPECT_EQ(messages.find("DllMain<-- TRUE\nQorce_GetPlugin--> \n"), 0u) << messages;
    EXPECT_NE(sentence, std::string::npos);
    EXPECT_NE(messages.find("\"\nQorce_GetPlugin--> \nPlugin::Plugin--> \nPlugin::Plugin<-- \nQorce_GetPlugin<-- S_OK\n"
                            "Plugin::get_Name--> \nPlugin::get_Name<-- S_OK\nPlugin::~Plugin--> \nPlugin::~Plugin<-- \n"
                            "DllMain--> \n",
                            sentence),
              std::string::npos)
        << messages;
}

TEST(LogTest, LinesHaveAHead) {
    const LogCapture log;
    SYSTEMTIME before, after;
    GetSystemTime(&before);
    Trace(L"Some::Function-->", L"");
    Trace(L"Some::Function<--", L"S_OK");
    GetSystemTime(&after);
    const auto lines = Lines(log.Text());
    ASSERT_EQ(lines.size(), 2u);
    char thread[16];
    std::snprintf(thread, sizeof thread, "|%4lx|", GetCurrentThreadId());
    const char* const messages[] = {"Some::Function--> ", "Some::Function<-- S_OK"};
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_TRUE(std::regex_match(lines[i], std::regex(line_head + std::string(messages[i])))) << lines[i];
        EXPECT_EQ(lines[i].find(thread), std::size("2026-01-01 00:00:00.000") - 1) << lines[i];
        char dates[2][32];
        for (int d = 0; d < 2; ++d) {
            const SYSTEMTIME& time = d == 0 ? before : after;
            std::snprintf(dates[d], sizeof dates[d], "%d-%02d-%02d %02d:%02d:%02d.%03d", time.wYear, time.wMonth,
                          time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
        }
        EXPECT_GE(lines[i], dates[0]) << "UTC";
        EXPECT_LE(lines[i].substr(0, std::size("2026-01-01 00:00:00.000") - 1), dates[1]);
    }
}

TEST(LogTest, CutsTheHeadAlone) {
    constexpr std::size_t head_length = 1023; // 1024 characters with the terminator.
    struct {
        std::size_t length;
        bool is_cut;
    } const rows[] = {{900, false}, {1023, true}, {1024, true}, {5000, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        const LogCapture log;
        const std::wstring result(3000, L'r');
        Trace(std::wstring(row.length, L'm').c_str(), result.c_str());
        Trace(L"next", L"");
        const auto lines = Lines(log.Text());
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_TRUE(lines[0].ends_with((row.is_cut ? "m" : "m ") + std::string(3000, 'r')));
        if (row.is_cut) {
            EXPECT_EQ(lines[0].size(), head_length + result.size());
        }
    }
}

TEST(LogTest, SurvivesEveryCharacter) {
    struct {
        const wchar_t* text;
        const char* bytes;
    } const rows[] = {
        {L"世界 ü \xD83D\xDE00", "世界 ü 😀"},
        {L"\xD83D", "\xEF\xBF\xBD"},
        {L"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {L"%s %n %d", "%s %n %d"},
        {L"tab\t", "tab\t"},
        {L"\xFFFF", "\xEF\xBF\xBF"},
    };
    const LogCapture log;
    std::string expected;
    for (const auto& row : rows) {
        Trace(row.text, row.text);
        TraceText(FunctionName("void F()"), row.text);
        expected += std::string(row.bytes) + " " + row.bytes + "\nF " + row.bytes + "\n";
    }
    Trace(L"after", L"");
    EXPECT_EQ(log.Messages(), expected + "after \n");

    // A surrogate pair that the cut splits.
    const LogCapture cut_log;
    for (std::size_t length = 985; length < 1000; ++length)
        Trace((std::wstring(length, L'm') + L"\xD83D\xDE00\xD83D\xDE00").c_str(), L"r");
    EXPECT_EQ(Lines(cut_log.Text()).size(), 15u);
}

TEST(LogTest, KeepsLinesOfSeveralThreadsWhole) {
    constexpr int thread_count = 4;
    constexpr int line_count = 250;
    const LogCapture log;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < thread_count; ++i)
            threads.emplace_back([i] {
                const std::wstring result(200, static_cast<wchar_t>(L'a' + i));
                for (int line = 0; line < line_count; ++line)
                    Trace(L"Thread<--", result.c_str());
            });
    }
    const auto lines = Lines(log.Text());
    EXPECT_EQ(lines.size(), std::size_t{thread_count * line_count});
    const std::regex whole(line_head + std::string("Thread<-- (a{200}|b{200}|c{200}|d{200})"));
    for (const std::string& line : lines)
        ASSERT_TRUE(std::regex_match(line, whole)) << line;
}

TEST(LogTest, TwoWritersOfOneFileKeepEachOthersLines) {
    const TemporaryFolder folder;
    const std::wstring path = (folder.Path() / "log").wstring();
    LogFile first, second;
    ASSERT_TRUE(first.Open(path));
    first.Write(L"gone\n");
    ASSERT_TRUE(second.Open(path)) << "each process begins the file anew";
    first.Write(L"first\n");
    second.Write(L"second\n");
    first.Write(L"first again\n");
    EXPECT_EQ(ReadBytes(path), "first\nsecond\nfirst again\n");
}

} // namespace
