#include "core/trace/Text.h"
#include "support/Environments.h"
#include "support/Log.h"
#include "ui/names/FilterString.h"
#include "ui/names/NameExtension.h"
#include "ui/names/QuotedNames.h"
#include "ui/names/ShortenedName.h"

#include <gtest/gtest.h>

namespace {

/// "PDF files:pdf,fdf; All files:*;"
std::wstring Shown(const std::vector<Ui::FilterEntry>& i_entries) {
    std::wstring text;
    for (const Ui::FilterEntry& entry : i_entries) {
        text += entry.text + L":";
        for (const std::wstring& extension : entry.extensions)
            text += L"<" + extension + L">";
        text += L" ";
    }
    return text;
}

TEST(FilterStringTest, IsReadInPairs) {
    const struct {
        const wchar_t* filters;
        const wchar_t* expected;
    } rows[] = {
        {L"", L""},
        {L"PDF files|*.pdf;*.fdf|All files|*.*|", L"PDF files:<pdf><fdf> All files:<*> "},
        {L"PDF files|*.pdf;*.fdf|All files|*.*", L"PDF files:<pdf><fdf> "}, // The last pair is not closed.
        {L"PDF files|*.pdf", L""},
        {L"PDF files", L""},
        {L"|*.pdf|", L""},
        {L"A|*.a||*.b|C|*.c|", L"A:<a> "}, // An empty text ends it,
        {L"A|*.a|B||C|*.c|", L"A:<a> "},   // and so does an empty list.
        {L"Docs|*.pdf; *.txt|", L"Docs:<pdf>< *.txt> "},
        {L"D|pdf;.txt;*doc;*.tar.gz|", L"D:<pdf><txt><doc><tar.gz> "},
        {L"D|;*.pdf;;*.;.|", L"D:<pdf> "}, // Pieces of which nothing is left are no extensions.
        {L"D|;|", L"D: "},
        {L"D|*|", L"D:<*> "},
        {L"D|*.pdf;*.*;*.txt|", L"D:<*> "},
        {L"D|**|E|*.*x|", L"D:<*> E:<*> "},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, Shown(Ui::ParseFilterString(row.filters))) << ToUtf8(row.filters);
}

TEST(QuotedNamesTest, AreScannedOrRefused) {
    using Names = std::optional<std::vector<std::wstring>>;
    const struct {
        const wchar_t* text;
        Names expected;
    } rows[] = {
        {LR"("a.pdf" "b.pdf")", Names({L"a.pdf", L"b.pdf"})},
        {LR"("a b.pdf")", Names({L"a b.pdf"})},
        {LR"(   "  a.pdf "    "b.pdf"   )", Names({L"a.pdf", L"b.pdf"})},
        {LR"("a.pdf""b.pdf")", Names({L"a.pdf", L"b.pdf"})},
        {LR"("report.pdf" "x")", Names({L"report.pdf"})}, // One character is no name here.
        {LR"("" "   " "xy")", Names({L"xy"})},
        {LR"("x")", Names(std::in_place)},
        {L"", Names(std::in_place)},
        {L"   ", Names(std::in_place)},
        {LR"(a.pdf "b.pdf")", std::nullopt},
        {LR"("a.pdf" b.pdf)", std::nullopt},
        {LR"("a.pdf" "b.pdf)", std::nullopt},
        {LR"(")", std::nullopt},
        {L"letter", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, Ui::ParseQuotedNames(row.text)) << ToUtf8(row.text);
}

TEST(NameExtensionTest, IsThePlatformsOfTheLastElement) {
    const std::wstring long_name(5000, L'n');
    const std::pair<std::wstring, const wchar_t*> rows[] = {
        {L"a.pdf", L".pdf"},
        {L"a.tar.gz", L".gz"},
        {L".profile", L".profile"},
        {L"letter", L""},
        {L"a.", L"."},
        {L"a.p d", L""},
        {L"x.pdf ", L""},
        {L"/Docs/v1.2/readme", L""},
        {L"/Docs/a.TXT", L".TXT"},
        {L"/v1.2/", L""},
        {long_name + L".pdf", L".pdf"},
    };
    for (const auto& [name, extension] : rows)
        EXPECT_EQ(extension, Ui::FindExtension(name)) << ToUtf8(name);
    EXPECT_EQ(std::nullopt, Ui::FindExtension(L""));
}

TEST(NameExtensionTest, DefaultOneGoesBehindAnyOther) {
    static constexpr FunctionName caller{"void Qorv::Dialog::AddDefaultExtension()"};
    const std::string prefix = "Qorv::Dialog::AddDefaultExtension INFORMATION: Name ";
    const std::string same = prefix + "has extension, it is same as default extensions - adding nothing\n";
    const std::string other =
        prefix + "either has no extension or it's different from default - adding default 'pdf'\n";
    const struct {
        const wchar_t* name;
        const wchar_t* default_ext;
        const wchar_t* expected;
        std::string line;
    } rows[] = {
        {L"a", L"pdf", L"a.pdf", other},          {L"a.txt", L"pdf", L"a.txt.pdf", other},
        {L"a.", L"pdf", L"a.pdf", other},         {L"a.PDF", L"pdf", L"a.PDF", same},
        {L"a.pdf", L"pdf", L"a.pdf", same},       {L"", L"pdf", L".pdf", other},
        {L"a.txt", L"", L"a.txt", std::string()},
    };
    for (const auto& row : rows) {
        const Tests::LogCapture log;
        std::wstring name = row.name;
        Ui::ApplyDefaultExtension(name, row.default_ext, caller);
        EXPECT_EQ(row.expected, name);
        EXPECT_TRUE(row.line.empty() || log.Messages().find(row.line) != std::string::npos) << log.Messages();
        EXPECT_EQ(row.line.empty(), log.Messages().find("INFORMATION") == std::string::npos);
    }
    const Tests::LogCapture log;
    std::wstring name = L"a";
    Ui::AddExtension(name, L"", caller);
    EXPECT_EQ(L"a", name);
    EXPECT_TRUE(log.Has("Qorv::Dialog::AddDefaultExtension ERROR: Extension to add is empty - adding nothing\n"));
}

TEST(ShortenedName, KeepsBeginningAndEnd) {
    const std::wstring fits(80, L'n');
    EXPECT_EQ(Ui::ShortenedName(fits), fits);
    EXPECT_EQ(Ui::ShortenedName(L"Begin" + std::wstring(5000, L'n') + L"end.pdf"),
              L"Begin" + std::wstring(44, L'n') + L"\u2026" + std::wstring(23, L'n') + L"end.pdf");
    std::wstring faces;
    for (int i = 0; i < 50; ++i)
        faces += L"\xD83D\xDE00";
    const std::wstring shortened = Ui::ShortenedName(faces);
    EXPECT_EQ(shortened.size() % 2, 1u) << "no half of a character";
    EXPECT_EQ(shortened.find(L'\u2026') % 2, 0u);
}

} // namespace
