// How qorvhost reads what was typed, and what it keeps of accounts.

#include "base/Failure.h"
#include "commands/CommandLine.h"
#include "commands/DialogOptions.h"
#include "commands/Item.h"
#include "commands/ProgressLine.h"
#include "host/AccountStore.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace Tests {
namespace {

using DevHost::Arguments;
using DevHost::CommandLine;
using DevHost::DialogOptions;

CommandLine Parse(Arguments i_words) {
    return CommandLine(i_words);
}

/// The messages about invalid words.
std::string Complaint(const Arguments& i_words, CommandLine::Origin i_origin = CommandLine::Origin::Program) {
    try {
        const CommandLine line(i_words, i_origin);
        return line.Help().empty() ? "none" : "help";
    } catch (const DevHost::UsageError& error) {
        return error.what();
    }
}

TEST(CommandLineTest, TakesOptionsAnywhereBeforeTheirEnd) {
    const CommandLine line({L"--json", L"ls", L"-R", L"--user", L"-id", L"--trace", L"file", L"--", L"--json"});
    EXPECT_EQ(line.Name(), "ls");
    EXPECT_TRUE(line.Has("-R"));
    EXPECT_EQ(line.Text("LOCATION"), L"--json");
    const DevHost::Options options = line.ProgramOptions();
    EXPECT_TRUE(options.is_json);
    EXPECT_EQ(options.user, L"-id");
    EXPECT_EQ(options.trace, 2u);
    EXPECT_TRUE(options.profile.is_absolute());
    EXPECT_EQ(options.module.filename(), L"Dropbox.qvp");
    EXPECT_FALSE(Parse({L"ls"}).ProgramOptions().trace.has_value());
    EXPECT_FALSE(Parse({L"ls"}).Has("LOCATION"));
    EXPECT_EQ(Parse({L"ls", L"--user", L"a", L"--user", L"b"}).ProgramOptions().user, L"b");
}

TEST(CommandLineTest, PassesOperandsOnAsTheyWereTyped) {
    for (const wchar_t* const name :
         {L"/a", L"rename", L"help", L"", L"[a,b]", L"{a}", L"\"a\"", L"%a;b", L"\u65E5\u672C \U0001F600.pdf",
          L"C:\\new\\table", L"half \xD83D", L"\xDE00\xD83D", L"Übung \uFFFD", L"a=b"}) {
        const auto line = Parse({L"rename", L"/b", name});
        EXPECT_EQ(line.Text("LOCATION"), L"/b");
        EXPECT_EQ(line.Text("NEW-NAME"), name);
        EXPECT_EQ(Parse({L"save-dialog", L"--name", name}).Text("--name"), name);
    }
}

TEST(CommandLineTest, SaysWhatIsWrong) {
    struct Row {
        Arguments words;
        const char* text;
    };
    for (const Row& row : {
             Row{{}, "A command is missing. Try: qorvhost --help"},
             Row{{L"lss", L"/"}, "There is no command \"lss\". Try: qorvhost --help"},
             Row{{L"help", L"lss"}, "There is no command \"lss\". Try: qorvhost --help"},
             Row{{L"--colour"}, "There is no option \"--colour\". Try: qorvhost --help"},
             Row{{L"get", L"/a"}, "FILE is required. Try: qorvhost get --help"},
             Row{{L"rm", L"/a", L"/b"}, "The following argument was not expected: /b. Try: qorvhost rm --help"},
             Row{{L"save-dialog", L"--folder"},
                 "The following argument was not expected: --folder. "
                 "Try: qorvhost save-dialog --help"},
             Row{{L"ls", L"--user"}, "--user: 1 required ID|NAME missing. Try: qorvhost ls --help"},
             Row{{L"--trace", L"loud", L"ls"}, "--trace: loud not in {off,debugger,file}. Try: qorvhost ls --help"},
             Row{{L"\u65E5\U0001F600"}, "There is no command \"\u65E5\U0001F600\". Try: qorvhost --help"},
             Row{{L"login", L"--token", L""}, "--token: a token is needed. Try: qorvhost login --help"},
             Row{{L"login", L"--token="}, "--token: 1 required TOKEN missing. Try: qorvhost login --help"},
             Row{{L"--help"}, "help"},
             Row{{L"--version"}, "help"},
             Row{{L"help", L"get"}, "help"},
             Row{{L"get", L"-h"}, "help"},
         })
        EXPECT_EQ(Complaint(row.words), row.text);
    EXPECT_NE(Complaint({L"--json", L"ls"}, CommandLine::Origin::Script), "none")
        << "a script's line has no such options";
}

TEST(CommandLineTest, SplitsLines) {
    struct Row {
        const wchar_t* line;
        Arguments words;
    };
    for (const Row& row : {
             Row{L"", {}},
             Row{L"   # a comment", {}},
             Row{L"ls /a#b # a comment", {L"ls", L"/a#b"}},
             Row{L"put \"C:\\a b\" /c\r", {L"put", L"C:\\a b", L"/c"}},
             Row{L"\tmv /a\" \"b \"\" \"#\"", {L"mv", L"/a b", L"", L"#"}},
         })
        EXPECT_EQ(DevHost::SplitLine(row.line), row.words);
    EXPECT_THROW(DevHost::SplitLine(L"ls \"/a"), DevHost::UsageError);
}

TEST(DialogOptionsTest, GivesOnlyWhatWasTyped) {
    const DialogOptions nothing(Parse({L"open-dialog"}));
    EXPECT_TRUE(nothing.items.empty()) << "the plug-in has values of its own for what is missing";
    EXPECT_EQ(nothing.location, L"/");
    EXPECT_FALSE(nothing.folder.has_value());

    const DialogOptions options(Parse({L"open-dialog", L"--several", L"--title", L"--in", L"--in", L"/B", L"/A",
                                       L"--flags", L"0x10", L"--filter-index", L"-1"}));
    EXPECT_EQ(options.items.size(), 3u);
    EXPECT_EQ(std::get<LONG>(options.items.at(L"Flags")), 17);
    EXPECT_EQ(std::get<LONG>(options.items.at(L"FileFilterIndex")), -1);
    EXPECT_EQ(std::get<std::wstring>(options.items.at(L"Title")), L"--in");
    EXPECT_EQ(options.location, L"/A");
    EXPECT_EQ(options.folder, L"/B");
    const DialogOptions all(Parse({L"save-dialog", L"--flags", L"0xFFFFFFFF"}));
    EXPECT_EQ(std::get<LONG>(all.items.at(L"Flags")), -1);

    for (const Arguments& wrong : {Arguments{L"--titel", L"x"},
                                   {L"/A", L"/B"},
                                   {L"--name"},
                                   {L"--flags", L""},
                                   {L"--flags", L"1x"},
                                   {L"--flags", L"0x1FFFFFFFF"},
                                   {L"--filter-index", L"first"}}) {
        Arguments words{L"open-dialog"};
        words.insert(words.end(), wrong.begin(), wrong.end());
        EXPECT_NE(Complaint(words), "none") << wrong.front().c_str();
    }
}

TEST(AccountStoreTest, KeepsOneDictionaryAnAccountInTheOrderOfSaving) {
    const TemporaryFolder folder;
    const DevHost::AccountStore store(folder.Path());
    const auto save = [&](const wchar_t* i_id, const wchar_t* i_name) {
        const auto node = Qorv::Create<DevHost::CabNode>();
        node->Member(L"UserId")->SetValue(std::wstring(i_id));
        node->Member(L"UserName")->SetValue(std::wstring(i_name));
        store.Save(*node);
    };
    const auto listed = [&] {
        std::wstring text;
        for (const DevHost::SavedAccount& account : store.List())
            text += account.id + L"=" + account.user_name + L";";
        return text;
    };
    EXPECT_EQ(listed(), L"");
    save(L"dbid:b", L"Ben");
    save(L"dbid:a", L"Ada");
    save(L"dbid:b", L"Benjamin");
    EXPECT_EQ(listed(), L"dbid:b=Benjamin;dbid:a=Ada;");
    store.Get(L"dbid:b").file.Remove();
    EXPECT_EQ(listed(), L"dbid:a=Ada;");
    save(L"dbid:c", L"Cem");
    EXPECT_EQ(listed(), L"dbid:a=Ada;dbid:c=Cem;");
    EXPECT_THROW(store.Get(L"dbid:b"), DevHost::Failure);
    EXPECT_EQ(store.Get(L"ada").id, L"dbid:a");
    save(L"dbid:d", L"ADA");
    EXPECT_THROW(store.Get(L"Ada"), DevHost::Failure) << "either account could be meant";
    save(L"dbid:e", L"dbid:a");
    EXPECT_EQ(store.Get(L"dbid:a").id, L"dbid:a") << "an id goes before a name";
}

TEST(ProgressLineTest, ShowsOnlyTransfersThatTakeAWhile) {
    std::string written;
    DevHost::ProgressLine line([&](std::string_view i_text) { written += i_text; });
    constexpr std::uint64_t megabyte = 1'000'000;
    line.Report(false, megabyte, 2 * megabyte, 5000);
    line.Report(false, 2 * megabyte, 2 * megabyte, 5999);
    EXPECT_EQ(written, "") << "done within a second";
    line.Report(false, megabyte, 10 * megabyte, 7000);
    line.Report(false, 2 * megabyte, 10 * megabyte, 8000);
    line.Report(false, 3 * megabyte, 10 * megabyte, 8100);
    EXPECT_EQ(written, "\rDownloading: 2.0 of 10.0 MB (20 %)") << "not for every piece";
    written.clear();
    line.Report(true, megabyte, 10 * megabyte, 9000);
    EXPECT_EQ(written, "") << "an upload that has just begun";
    line.Report(true, 10 * megabyte, 10 * megabyte, 9500);
    EXPECT_EQ(written, "\r" + std::string(34, ' ') + "\r") << "nothing stays";
    DevHost::ProgressLine().Report(false, megabyte, 2 * megabyte, 5000);
}

TEST(ItemTest, ShowsSizesAndTimes) {
    DevHost::Item item;
    item.location = L"dropbox://id/a \"b\"";
    item.title = L"a \"b\"";
    item.size = 1234567;
    item.modified = 130'975'062'301'230'000; // 2016-01-17 12:10:30.123 UTC
    EXPECT_EQ(item.SizeText(), L"1 234 567");
    DevHost::JsonValue json;
    item.Write(json);
    EXPECT_EQ(json.Done(), R"({"location":"dropbox://id/a \"b\"","name":"a \"b\"","is_folder":false,"size":1234567,)"
                           R"("modified":"2016-01-17T12:10:30Z"})");
    item.is_folder = true;
    item.modified = 0;
    DevHost::JsonValue folder;
    item.Write(folder);
    EXPECT_NE(folder.Done().find(R"("is_folder":true,"size":null,"modified":null)"), std::string::npos);
    EXPECT_EQ(item.SizeText(), L"");
}

} // namespace
} // namespace Tests
