#include "core/trace/Text.h"
#include "ui/list/NaturalOrder.h"

#include <gtest/gtest.h>

namespace {

TEST(NaturalOrderTest, IsThatOfAPerson) {
    const std::wstring long_title(5000, L'n');
    const std::pair<std::wstring, std::wstring> rows[] = {
        {L"", L"a"},
        {L"2", L"10"},
        {L"page 9.pdf", L"page 10.pdf"},
        {L"1.2", L"1.10"},
        {L"a2b10", L"a10b2"},
        {L"a2b2", L"a2b10"},
        {L"a10", L"aa"},
        {L"6", L"007"},
        {L"007", L"8"},
        {L"9", L"0010"},
        {L"0", L"1"},
        {L"999999999", L"10000000000"},
        {L"a", L"B"},
        {L"B", L"c"},
        {L"REPORT 2", L"report 10"}, // The case comes after the number, wherever it stands,
        {L"report 2", L"REPORT 10"},
        {L"résumé 2", L"resume 10"}, // and so does an accent.
        {L"resume 2", L"résumé 10"},
        {L"resume", L"résumé"},
        {L"e", L"É"},
        {L"É", L"f"},
        {L"e\x0301"
         L"a",
         L"éb"}, // An accent of its own.
        {L"z", L"дом"},
        {L"дом", L"世界"},
        {L"_notes", L"1"},
        {L"a-2", L"a-10"},
        {L"a-10", L"a1"}, // A hyphen is a character like others.
        {L"a", L"a b"},
        {long_title + L"2", long_title + L"10"},
    };
    for (const auto& [first, second] : rows) {
        EXPECT_LT(Ui::NaturalSortKey(first), Ui::NaturalSortKey(second)) << ToUtf8(first) << " | " << ToUtf8(second);
        EXPECT_EQ(Ui::NaturalSortKey(first), Ui::NaturalSortKey(first)) << ToUtf8(first);
    }
}

// To the platform the titles of a row are equal, or nearly so: two files of one folder may have them.
TEST(NaturalOrderTest, KeepsNearlyEqualTitlesApart) {
    const struct {
        const wchar_t* first;
        const wchar_t* second;
        const wchar_t* next; ///< Stands behind both.
    } rows[] = {
        {L"a", L"a\x200d", L"a0"}, {L"", L"\x200d", L" "}, {L"a.pdf", L"A.PDF", L"b"}, {L"7", L"007", L"8"},
        {L"é", L"e\x0301", L"f"},  {L"ss", L"ß", L"st"},   {L"1", L"１", L"2"},
    };
    for (const auto& row : rows) {
        EXPECT_NE(Ui::NaturalSortKey(row.first), Ui::NaturalSortKey(row.second)) << ToUtf8(row.first);
        EXPECT_LT(Ui::NaturalSortKey(row.first), Ui::NaturalSortKey(row.next)) << ToUtf8(row.first);
        EXPECT_LT(Ui::NaturalSortKey(row.second), Ui::NaturalSortKey(row.next)) << ToUtf8(row.first);
    }
}

} // namespace
