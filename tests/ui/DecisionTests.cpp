#include "afs/AfsTest.h"
#include "ui/dialog/Decision.h"
#include "ui/folder/FolderLoad.h"
#include "ui/list/FileRows.h"
#include "ui/names/NewName.h"

#include <atomic>

namespace {

using Kind = Ui::Decision::Kind;

/// A folder of the service as a dialog lists it: "../", the folder "Docs" and two files.
class DecisionTest : public Tests::AfsTest {
protected:
    DecisionTest() {
        std::filesystem::create_directories(Tests::Service::LocalPath(L"/Here/Docs"));
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/a.pdf"), "a");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/b.pdf"), "b");
        // To the platform these two are equal, to the service they are not.
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/Strasse.pdf"), "ss");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/Straße.pdf"), "sz");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/Maße.pdf"), "sz");
        Tests::WriteBytes(Tests::Service::LocalPath(L"/Here/r\u00e9sum\u00e9.pdf"), "composed");
        const std::atomic<bool> is_running = true;
        Ui::FolderLoad load({m_file_system, nullptr}, NameOf(L"/Here"), nullptr, is_running);
        EXPECT_HRESULT(S_OK, load.Run());
        m_items = load.m_items;
        m_rows.Load(m_file_system, m_items, load.m_parent_folder);
    }

    std::vector<const Ui::FileRow*> Selection(std::initializer_list<std::size_t> i_rows) const {
        std::vector<const Ui::FileRow*> rows;
        for (const std::size_t row : i_rows)
            rows.push_back(&m_rows[row]);
        return rows;
    }

    Ui::Decision Typed(const Ui::DialogMode& i_mode, std::initializer_list<const wchar_t*> i_texts) const {
        std::vector<Ui::TypedName> names;
        for (const wchar_t* const text : i_texts)
            names.push_back({.text = text});
        Ui::MatchTypedNames(m_file_system, m_items, names, FunctionName("void Caller::Read()"));
        return Ui::DecideTypedNames(i_mode, names);
    }

    static constexpr std::size_t up = 0, docs = 1, a_pdf = 2, b_pdf = 3;
    Ui::FolderItems m_items;
    Ui::FileRows m_rows;
};

constexpr Ui::DialogMode open_one{};
constexpr Ui::DialogMode open_several{.allows_several = true};
constexpr Ui::DialogMode choose_folder{.chooses_folder = true};
constexpr Ui::DialogMode save{.is_open = false, .asks_before_replacing = true};
constexpr Ui::DialogMode save_silently{.is_open = false};

std::wstring MessageOf(const Ui::Decision& i_decision) {
    return i_decision.message_id != nullptr ? i_decision.message_id : L"";
}

TEST_F(DecisionTest, TakesWaysForWaysAndNamesForNames) {
    const struct {
        const wchar_t* text;
        Kind kind;
        const wchar_t* location;
    } cases[] = {
        {L"", Kind::nothing, L""},
        {L"..", Kind::go_up, L""},
        {L"../", Kind::go_up, L""},
        {L"/", Kind::go_to, L"/"},
        {L"/Docs/x.pdf", Kind::go_to, L"/Docs/x.pdf"},
        {L"dropbox://id/Docs", Kind::go_to, L"dropbox://id/Docs"},
        {L"DropBox://id/Docs", Kind::go_to, L"dropbox://id/Docs"},
        {L"docs", Kind::enter, L""},
        {L"a.pdf", Kind::nothing, L""},
        {L"docs/x.pdf", Kind::go_to, L"docs/x.pdf"},
        {L"other/x.pdf", Kind::nothing, L""},
        {L"new", Kind::nothing, L""},
        {L"...", Kind::nothing, L""},
        {L"\"Docs\" \"a.pdf\"", Kind::nothing, L""},
    };
    for (const auto& test : cases) {
        const Ui::Decision decision = Ui::DecideWay(test.text, m_rows);
        EXPECT_EQ(test.kind, decision.kind) << ToUtf8(test.text);
        EXPECT_EQ(test.location, decision.text) << ToUtf8(test.text);
    }
    EXPECT_EQ(m_rows[docs].name, Ui::DecideWay(L"docs", m_rows).names.front().name);
}

TEST_F(DecisionTest, MakesTheMostOfWhatIsSelected) {
    const struct {
        const char* what;
        Ui::DialogMode mode;
        std::vector<const Ui::FileRow*> selection;
        Kind kind;
        std::size_t names;
        const wchar_t* message;
    } cases[] = {
        {"nothing", open_several, {}, Kind::nothing, 0, L""},
        {"up", open_several, Selection({up}), Kind::go_up, 0, L""},
        {"a folder", open_several, Selection({docs}), Kind::enter, 1, L""},
        {"a folder to save in", save, Selection({docs}), Kind::enter, 1, L""},
        {"a file", open_one, Selection({a_pdf}), Kind::choose, 1, L""},
        {"files", open_several, Selection({a_pdf, b_pdf}), Kind::choose, 2, L""},
        {"too many files", open_one, Selection({a_pdf, b_pdf}), Kind::refuse, 0, L"db.msg.oneFile"},
        {"a folder among files", open_several, Selection({docs, a_pdf}), Kind::refuse, 0, L"db.msg.notAFile"},
        {"up among files", open_several, Selection({up, a_pdf}), Kind::refuse, 0, L"db.msg.notAFile"},
        {"a file to replace", save, Selection({a_pdf}), Kind::ask_to_replace, 1, L""},
        {"a file to replace unasked", save_silently, Selection({a_pdf}), Kind::choose, 1, L""},
        {"the shown folder", choose_folder, {}, Kind::choose_shown, 0, L""},
        {"up among folders", choose_folder, Selection({up}), Kind::go_up, 0, L""},
        {"a folder to choose", choose_folder, Selection({docs}), Kind::choose, 1, L""},
        {"too many folders", choose_folder, Selection({up, docs}), Kind::refuse, 0, L"db.msg.oneFolder"},
    };
    for (const auto& test : cases) {
        const Ui::Decision decision = Ui::DecideSelection(test.mode, test.selection);
        EXPECT_EQ(test.kind, decision.kind) << test.what;
        EXPECT_EQ(test.names, decision.names.size()) << test.what;
        EXPECT_EQ(test.message, MessageOf(decision)) << test.what;
    }
}

TEST_F(DecisionTest, KnowsWhetherTheRowsOrTheNameAreMeant) {
    const struct {
        const char* what;
        Ui::DialogMode mode;
        Ui::DialogContent content;
        bool means_selection;
        bool goes_to_folder; ///< What the button says.
    } cases[] = {
        {"nothing", open_one, {}, false, false},
        {"a file", open_one, {.selection = Selection({a_pdf}), .text = L"a.pdf"}, true, false},
        {"a folder", open_one, {.selection = Selection({docs})}, true, true},
        {"up", open_one, {.selection = Selection({up})}, true, true},
        {"the folder left", open_one, {.selection = Selection({docs}), .is_selection_chosen = false}, true, true},
        {"a name, typed",
         open_one,
         {.selection = Selection({docs}), .text = L"a.pdf", .is_text_typed = true},
         false,
         false},
        {"a folder's name, typed", open_one, {.text = L"docs", .is_text_typed = true}, false, true},
        {"up, typed", save, {.text = L"..", .is_text_typed = true}, false, true},
        {"a path, typed", save, {.text = L"/Here/x", .is_text_typed = true}, false, false},
        {"a folder's path, typed", save, {.text = L"/Here/", .is_text_typed = true}, false, true},
        {"a name to save", save, {.text = L"x.pdf", .is_text_typed = true}, false, false},
        {"the folder left, and a name to save",
         save,
         {.selection = Selection({docs}), .is_selection_chosen = false, .text = L"x.pdf"},
         false,
         false},
        {"the folder left, and no name",
         save,
         {.selection = Selection({docs}), .is_selection_chosen = false},
         false,
         false},
        {"a clicked folder, and a name to save", save, {.selection = Selection({docs}), .text = L"x.pdf"}, true, true},
        {"a folder to choose", choose_folder, {.selection = Selection({docs})}, true, false},
        {"up, among folders", choose_folder, {.selection = Selection({up})}, true, true},
        {"the folder left, among folders",
         choose_folder,
         {.selection = Selection({docs}), .is_selection_chosen = false},
         false,
         false},
        {"a path, among folders", choose_folder, {.text = L"/Here", .is_text_typed = true}, false, true},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(test.means_selection, Ui::MeansSelection(test.mode, test.content)) << test.what;
        EXPECT_EQ(test.goes_to_folder, Ui::GoesToFolder(test.mode, test.content, m_rows)) << test.what;
    }
}

TEST_F(DecisionTest, MakesTheMostOfTypedNames) {
    const struct {
        const char* what;
        Ui::DialogMode mode;
        std::initializer_list<const wchar_t*> texts;
        Kind kind;
        const wchar_t* message;
    } cases[] = {
        {"nothing", open_several, {}, Kind::nothing, L""},
        {"nothing, among folders", choose_folder, {}, Kind::choose_shown, L""},
        {"a file in another case", open_one, {L"A.PDF"}, Kind::choose, L""},
        {"files", open_several, {L"a.pdf", L"b.pdf"}, Kind::choose, L""},
        {"a missing file", open_several, {L"a.pdf", L"c.pdf"}, Kind::refuse, L"db.msg.fileNotFound"},
        {"a folder among files", open_several, {L"a.pdf", L"Docs"}, Kind::refuse, L"db.msg.notAFile"},
        {"a file among folders", choose_folder, {L"a.pdf"}, Kind::refuse, L"db.msg.notAFolder"},
        {"a missing folder", choose_folder, {L"Nowhere"}, Kind::refuse, L"db.msg.folderNotFound"},
        {"a new file", save, {L"new.pdf"}, Kind::save_new, L""},
        {"a new file, unasked", save_silently, {L"new.pdf"}, Kind::save_new, L""},
        {"an existing file", save, {L"A.pdf"}, Kind::ask_to_replace, L""},
        {"an existing file, unasked", save_silently, {L"a.pdf"}, Kind::choose, L""},
        {"files to save", save, {L"x.pdf", L"y.pdf"}, Kind::refuse, L"db.msg.oneFile"},
        {"a path to save to", save, {L"sub/x.pdf"}, Kind::refuse, L"db.msg.nameCharacters"},
        {"a name that the service does not take", save, {L"what?.pdf"}, Kind::refuse, L"db.msg.nameCharacters"},
    };
    for (const auto& test : cases) {
        const Ui::Decision decision = Typed(test.mode, test.texts);
        EXPECT_EQ(test.kind, decision.kind) << test.what;
        EXPECT_EQ(test.message, MessageOf(decision)) << test.what;
    }
    EXPECT_EQ(nullptr, Typed(save, {L"new.pdf"}).names.front().name) << "not there yet";
    EXPECT_NE(nullptr, Typed(save, {L"A.pdf"}).names.front().name);
}

TEST_F(DecisionTest, CompletesWhatIsTypedOn) {
    const struct {
        const wchar_t* previous;
        const wchar_t* text;
        const wchar_t* completed; ///< Empty for nothing.
    } cases[] = {
        {L"", L"d", L"docs"},   {L"", L"a.", L"a.pdf"}, {L"a", L"a.", L"a.pdf"}, {L"a.pd", L"a.pdf", L""},
        {L"a.pdf", L"a.", L""}, {L"", L"z", L""},       {L"x", L"a", L""},       {L"", L"", L""},
        {L"\"", L"\"a", L""},   {L"/", L"/a", L""},     {L"", L"..", L""},
    };
    for (const auto& test : cases)
        EXPECT_EQ(test.completed, Ui::CompletedName(test.previous, test.text, m_rows).value_or(L""))
            << ToUtf8(test.text);
    for (const wchar_t* const pattern : {L"*.fdf", L"inv*", L"a?*.pdf"})
        EXPECT_TRUE(Ui::IsPattern(pattern)) << ToUtf8(pattern);
    for (const wchar_t* const name : {L"a.pdf", L"", L"what?.pdf", L"/x/*", L"\"a*\""})
        EXPECT_FALSE(Ui::IsPattern(name)) << ToUtf8(name);
}

TEST_F(DecisionTest, IsLoggedAsASentence) {
    const std::pair<Ui::Decision, const wchar_t*> rows[] = {
        {Ui::DecideSelection(open_several, Selection({a_pdf, b_pdf})), L"INFORMATION: Choosing 2 names, 'a.pdf' first"},
        {Ui::DecideSelection(open_several, Selection({docs, a_pdf})),
         L"WARNING: Refusing 'Docs' because of db.msg.notAFile"},
        {Ui::DecideWay(L"/x", m_rows), L"INFORMATION: The location '/x' is meant - going there"},
        {Typed(save, {L"a.pdf"}), L"INFORMATION: The file 'a.pdf' exists - asking whether to replace it"},
    };
    for (const auto& [decision, sentence] : rows)
        EXPECT_EQ(sentence, Ui::LogSentence(decision));
}

TEST_F(DecisionTest, TakesNoLikenessForTheNameThatIsMeant) {
    for (const wchar_t* const typed : {L"Strasse.pdf", L"STRASSE.pdf", L"Straße.pdf"}) {
        const Ui::Decision decision = Typed(save, {typed});
        ASSERT_EQ(Kind::ask_to_replace, decision.kind) << ToUtf8(typed);
        EXPECT_TRUE(EqualsNoCase(TextOf(decision.names.front().name), Location(L"/Here/") + typed)) << ToUtf8(typed);
        const bool is_sharp = TextOf(decision.names.front().name).find(L'ß') != std::wstring::npos;
        EXPECT_EQ(std::wstring_view(typed).find(L'ß') != std::wstring_view::npos, is_sharp) << ToUtf8(typed);
    }
    const Ui::Decision both = Typed(open_several, {L"straße.pdf", L"strasse.pdf"});
    ASSERT_EQ(2U, both.names.size());
    EXPECT_NE(both.names[0].name, both.names[1].name);

    // The platform finds each of these equal to a listed title.
    for (const wchar_t* const typed : {L"Masse.pdf", L"a\u200b.pdf", L"a.p\u00addf", L"re\u0301sume\u0301.pdf"}) {
        const Ui::Decision decision = Typed(save, {typed});
        ASSERT_EQ(Kind::save_new, decision.kind) << ToUtf8(typed);
        EXPECT_EQ(nullptr, decision.names.front().name) << ToUtf8(typed);
        EXPECT_EQ(L"db.msg.fileNotFound", MessageOf(Typed(open_one, {typed}))) << ToUtf8(typed);
        EXPECT_EQ(Kind::nothing, Ui::DecideWay(typed, m_rows).kind) << ToUtf8(typed);
    }
    EXPECT_EQ(Kind::ask_to_replace, Typed(save, {L"R\u00c9SUM\u00c9.pdf"}).kind) << "only the case differs";
    EXPECT_EQ(Kind::nothing, Ui::DecideWay(L"Do\u200bcs", m_rows).kind) << "a folder is not entered either";
}

TEST_F(DecisionTest, SaysWhichRuleANewNameBreaks) {
    const std::wstring longest(255, L'n');
    const struct {
        std::wstring name;
        std::wstring message; ///< Empty for a good name.
        std::wstring characters{};
    } cases[] = {
        {L"letter.pdf", L""},
        {L"Übersicht é.pdf", L""},
        {longest, L""},
        {longest + L"n", L"db.msg.nameTooLong"},
        {L"", L"db.msg.badName"},
        {L".", L"db.msg.nameReserved"},
        {L"..", L"db.msg.nameReserved"},
        {L"...", L""},
        {L"a/b", L"db.msg.nameCharacters", L"/"},
        {L"a\\b", L"db.msg.nameCharacters", L"\\"},
        {L"a\"b\"?c*", L"db.msg.nameCharacters", L"\" ? *"},
        {L"a:b", L"db.msg.nameCharacters", L":"},
        {L"blank ", L"db.msg.nameEnd"},
        {L" blank", L""},
        {L"line\nbreak", L"db.msg.badName"},
        {L"no-break\u00a0", L"db.msg.nameEnd"},
        {L"Thumbs.db", L"db.msg.nameReserved"},
        {L"~$letter.docx", L"db.msg.nameReserved"},
        {L"~letter.tmp", L"db.msg.nameReserved"},
        {L"世界 \xD83D\xDE00.pdf", L""},
        {L"half a pair \xD83D.pdf", L"db.msg.badName"},
    };
    for (const auto& test : cases) {
        const auto fault = Ui::FaultOfNewName(test.name);
        EXPECT_EQ(test.message, fault ? fault->message_id : L"") << ToUtf8(test.name);
        EXPECT_EQ(test.characters, fault ? fault->characters : L"") << ToUtf8(test.name);
    }
}

TEST_F(DecisionTest, HoldsNoRuleAboutNewNamesAgainstAnExistingFile) {
    Ui::TypedName existing{.text = L"blank ", .name = m_rows[a_pdf].name};
    EXPECT_EQ(Kind::ask_to_replace, Ui::DecideTypedNames(save, {existing}).kind);
    existing.name.Reset();
    EXPECT_EQ(Kind::refuse, Ui::DecideTypedNames(save, {existing}).kind);
}

} // namespace
