// Paths on their way to the service, under different code pages.

#include "dropbox/RemotePath.h"

#include "core/trace/Exceptions.h"
#include "core/trace/Text.h"
#include "dropbox/ApiCalls.h"
#include "dropbox/Json.h"

#include <gtest/gtest.h>

#include <random>

namespace {

/// How the service reads a header that WinINet has converted to the machine's code page: UTF-8, then JSON.
std::wstring ReadAsTheServiceDoes(const std::wstring& i_header_text, UINT i_code_page) {
    const int length = static_cast<int>(i_header_text.size());
    std::string bytes(i_header_text.size() * 4, '\0');
    const int size = WideCharToMultiByte(i_code_page, 0, i_header_text.data(), length, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    Dropbox::Utility::JsonDocument document;
    document.ParseText(FromUtf8(bytes));
    return document.HasParseError() ? L"" : Dropbox::Utility::Text(Dropbox::Utility::Member(document, L"path"));
}

std::wstring RandomName(std::mt19937& io_random) {
    const struct {
        unsigned first, last;
    } blocks[] = {{0x20, 0x7F},     {0x80, 0x17F},    {0x300, 0x36F},    {0x400, 0x4FF},
                  {0x3040, 0x30FF}, {0x4E00, 0x9FFF}, {0xAC00, 0xD7A3},  {0xE000, 0xE0FF},
                  {0x2000, 0x20CF}, {0xFF00, 0xFFEF}, {0x1F300, 0x1F6FF}};
    std::wstring name;
    for (unsigned count = 1 + io_random() % 12; count > 0; --count) {
        const auto& block = blocks[io_random() % std::size(blocks)];
        const unsigned code = block.first + io_random() % (block.last - block.first + 1);
        if (code == L'"' || code == L'\\')
            continue;
        if (code > 0xFFFF)
            name += static_cast<wchar_t>(0xD7C0 + (code >> 10));
        name += static_cast<wchar_t>(code > 0xFFFF ? 0xDC00 + (code & 0x3FF) : code);
    }
    return name;
}

TEST(RemotePathTest, EveryNameArrivesUnderEveryCodePage) {
    std::vector<std::wstring> names = {L"CafÃ©.pdf", L"表.pdf",  L"世界.txt", L"\xD83D\xDE00",
                                       L"Ω≈ç√",      L"e\u0301", L"a\x7F"};
    std::mt19937 random(20261121);
    for (int i = 0; i < 500; ++i)
        names.push_back(RandomName(random));
    for (const UINT code_page : {1252u, 1251u, 932u, 936u, 949u, 950u, static_cast<UINT>(CP_UTF8)})
        for (const std::wstring& name : names) {
            const std::wstring arguments = L"{\"path\": \"/" + name + L"\"}";
            const std::wstring header = Dropbox::HeaderText(arguments, code_page);
            ASSERT_EQ(ToUtf8(ReadAsTheServiceDoes(header, code_page)), ToUtf8(L"/" + name))
                << "code page " << code_page;
        }
}

TEST(RemotePathTest, EscapesNothingButWhatIsOutsideAscii) {
    EXPECT_EQ(Dropbox::HeaderText(L"{\"path\": \"/a\"b\\ ~\x7F.txt\"}", 1252), L"{\"path\": \"/a\"b\\ ~\x7F.txt\"}");
    EXPECT_EQ(Dropbox::HeaderText(L"\u0080é表\xD83D\xDE00", 1252), L"\\u0080\\u00e9\\u8868\\ud83d\\ude00");
    EXPECT_EQ(Dropbox::HeaderText(L"é表", CP_UTF8), L"é表");
}

TEST(RemotePathTest, KnowsWhatCanBeSent) {
    const struct {
        std::wstring path;
        bool is_well_formed, can_be_sent;
    } rows[] = {
        {L"", true, true},          {L"/世界 \xD83D\xDE00.txt", true, true},
        {L"/a\"b", true, false},    {L"/a\\b", true, false},
        {L"/\xD83D", false, false}, {L"/\xDE00\xD83D.txt", false, false},
        {L"/a\x1F", false, false},  {std::wstring(L"/a\0b", 4), false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Dropbox::IsWellFormed(row.path), row.is_well_formed) << ToUtf8(row.path);
        EXPECT_EQ(Dropbox::CanBeSent(row.path), row.can_be_sent) << ToUtf8(row.path);
    }
}

TEST(RemotePathTest, RefusesArgumentsThatNameAnotherItem) {
    const struct {
        const char* name;
        std::wstring path;
    } rows[] = {
        {"another member", L"/a\",\"path\": \"/b"},
        {"an escape of its own", L"/a\\u0062"},
        {"a backslash that takes the escape's away", L"/a\\é.pdf"},
        {"a control character", L"/a\n"},
        {"half a character", L"/\xD83D"},
    };
    for (const auto& row : rows) {
        EXPECT_THROW(Dropbox::UploadArgument(row.path), HResultException) << row.name;
        EXPECT_THROW(Dropbox::DownloadArgument(row.path), HResultException) << row.name;
    }
    EXPECT_NO_THROW(Dropbox::UploadArgument(L"/a\"b")) << "bad JSON, which the service refuses";
}

TEST(RemotePathTest, TellsPathsApart) {
    const struct {
        std::wstring asked, answered;
        bool is_same;
    } rows[] = {
        {L"/Cafe\u0301.pdf", L"/CAFÉ.pdf", true},
        {L"/a", L"/A", true},
        {L"/a", L"/b", false},
        {L"/straße.pdf", L"/strasse.pdf", false},
        {L"/\xD83D", L"/\xDE00", false},
        {L"/a", L"", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Dropbox::IsSamePath(row.asked, row.answered), row.is_same) << ToUtf8(row.asked);
}

} // namespace
