#include "ui/list/CellText.h"
#include "ui/list/CountText.h"

#include "core/trace/Text.h"
#include "dropbox/DateTime.h"
#include "support/HostTest.h"

namespace {

using CellTextTest = Tests::HostTest;

Ui::FileRow Row(const wchar_t* i_title, const wchar_t* i_extension, bool i_is_folder = false) {
    Ui::FileRow row;
    row.title = i_title;
    row.extension = i_extension;
    row.is_folder = i_is_folder;
    return row;
}

TEST_F(CellTextTest, NamesTheKind) {
    const Ui::CellText cells(m_host);
    const std::pair<Ui::FileRow, const wchar_t*> rows[] = {
        {Row(L"letter.pdf", L"PDF"), L"PDF file"}, {Row(L"letter", L""), L"File"},
        {Row(L"Docs", L"", true), L"Folder"},      {Row(L"../", L"", true), L"Folder"},
        {Row(L"a.%1", L"%1"), L"%1 file"},
    };
    for (const auto& [row, kind] : rows) {
        EXPECT_EQ(kind, cells.Text(row, Ui::FileColumn::kind)) << ToUtf8(row.title);
        EXPECT_EQ(row.title, cells.Text(row, Ui::FileColumn::name));
    }
}

// Units, decimal points and the order of a date's parts are the machine's: only what every one has in common is looked
// at.
TEST_F(CellTextTest, TellsSizesAndDatesInTheUsersForm) {
    const Ui::CellText cells(m_host);
    Ui::FileRow row = Row(L"a", L"");
    const std::pair<ULONGLONG, const wchar_t*> sizes[] = {
        {0, L"0"}, {999, L"999"}, {5 * 1024, L"5"}, {7ULL << 20, L"7"}, {9ULL << 40, L"9"}};
    for (const auto& [size, number] : sizes) {
        row.size = size;
        const std::wstring text = cells.Text(row, Ui::FileColumn::size);
        EXPECT_TRUE(text.starts_with(number)) << ToUtf8(text);
        EXPECT_GT(text.size(), std::wcslen(number)) << "a unit belongs to it";
        EXPECT_LT(text.size(), 12U) << ToUtf8(text);
    }
    EXPECT_EQ(L"", cells.Text(Row(L"Docs", L"", true), Ui::FileColumn::size));
    row.size = 1;
    EXPECT_EQ(L"1 byte", cells.Text(row, Ui::FileColumn::size));
    EXPECT_EQ(L"999", Ui::CountText(999));
    EXPECT_EQ(6U, Ui::CountText(10'000).size()) << "one separator, and no decimals";

    EXPECT_EQ(L"", cells.Text(row, Ui::FileColumn::date)) << "it is not known";
    row.modified = Dropbox::Utility::ParseDateTime(L"2015-05-12T15:50:38Z");
    const std::wstring date = cells.Text(row, Ui::FileColumn::date);
    EXPECT_NE(date.find(L"15"), std::wstring::npos) << "the year: " << ToUtf8(date);
    EXPECT_NE(date.find(L"12"), std::wstring::npos) << "the day: " << ToUtf8(date);
    EXPECT_EQ(date.find(L"38"), std::wstring::npos) << "no seconds: " << ToUtf8(date);
    row.modified += 21ULL * 10'000'000; // Still in the same minute,
    EXPECT_EQ(date, cells.Text(row, Ui::FileColumn::date));
    row.modified += 10'000'000; // and in the next one.
    EXPECT_NE(date, cells.Text(row, Ui::FileColumn::date));
    row.modified = ~0ULL;
    EXPECT_EQ(L"", cells.Text(row, Ui::FileColumn::date)) << "no calendar has it";
}

TEST_F(CellTextTest, TellsDatesInLocalTime) {
    TIME_ZONE_INFORMATION utc{}, half_a_day_ahead{};
    half_a_day_ahead.Bias = -12 * 60;
    Ui::FileRow row = Row(L"a", L"");
    row.modified = Dropbox::Utility::ParseDateTime(L"2015-05-12T15:50:38Z");
    const std::wstring there = Ui::CellText(m_host, &half_a_day_ahead).Text(row, Ui::FileColumn::date);
    row.modified = Dropbox::Utility::ParseDateTime(L"2015-05-13T03:50:38Z");
    EXPECT_EQ(Ui::CellText(m_host, &utc).Text(row, Ui::FileColumn::date), there);
}

} // namespace
