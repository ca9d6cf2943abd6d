// Error texts, exceptions, comparisons, conversions.

#include "core/trace/ErrorText.h"
#include "core/trace/Exceptions.h"
#include "core/trace/Secret.h"
#include "core/trace/Text.h"
#include "http/HttpException.h"
#include "support/Outcome.h"

using namespace Tests;

namespace {

constexpr wchar_t no_information[] = L"<no system error information avaliable>";

TEST(ErrorTextTest, NamesHResults) {
    EXPECT_TRUE(HResultText(E_POINTER).starts_with(L"HRESULT 0x80004003: "));
    EXPECT_TRUE(HResultText(E_OUTOFMEMORY).starts_with(L"HRESULT 0x8007000e: "));
    EXPECT_TRUE(HResultText(E_OUTOFMEMORY).ends_with(L"\r\n")) << "the system's own line end stays";
    EXPECT_TRUE(HResultText(S_OK).starts_with(L"HRESULT 0x00000000: "));
    EXPECT_EQ(HResultText(static_cast<HRESULT>(0xA0001234)), std::wstring(L"HRESULT 0xa0001234: ") + no_information);
    // A message with inserts, but there are no arguments for them here.
    EXPECT_TRUE(HResultText(HRESULT_FROM_WIN32(ERROR_WRONG_DISK)).starts_with(L"HRESULT 0x80070022: "));
}

TEST(ErrorTextTest, NamesLastErrors) {
    struct {
        DWORD error;
        const wchar_t* start;
        bool is_known;
    } const rows[] = {
        {0, L"GetLastError 0: ", false},
        {ERROR_ACCESS_DENIED, L"GetLastError 5: ", true},
        {ERROR_INTERNET_NAME_NOT_RESOLVED, L"GetLastError 12007: ", true},
        {9'999'999, L"GetLastError 9999999: ", false},
        {0xFFFFFFFF, L"GetLastError 4294967295: ", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.error);
        SetLastError(row.error);
        const std::wstring text = LastErrorText();
        EXPECT_EQ(GetLastError(), row.error);
        EXPECT_TRUE(text.starts_with(row.start)) << ToUtf8(text);
        if (!row.is_known) {
            EXPECT_EQ(text, std::wstring(row.start) + no_information);
        }
    }
    SetLastError(ERROR_INTERNET_EXTENDED_ERROR); // The server's words, of which there are none.
    EXPECT_EQ(LastErrorText(), std::wstring(L"GetLastError 12003: ") + no_information);
}

TEST(ErrorTextTest, SpeaksTheLanguageItIsAskedFor) {
    constexpr DWORD german = 1031;
    EXPECT_NE(HResultText(E_ACCESSDENIED, german), HResultText(E_ACCESSDENIED));
    EXPECT_NE(HResultText(E_ACCESSDENIED, user_language).find(L": "), std::wstring::npos);
    SetLastError(ERROR_INTERNET_CANNOT_CONNECT);
    EXPECT_NE(LastErrorText(german), LastErrorText());
}

TEST(ExceptionTest, KeepsWordsAndCode) {
    SetLastError(ERROR_ACCESS_DENIED);
    const Outcome api = OutcomeOf([] { throw ApiException(); });
    EXPECT_EQ(api.error, static_cast<DWORD>(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(api.message.starts_with(L"GetLastError 5: "));
    EXPECT_EQ(OutcomeOf([] { throw ApiException(L"own words"); }).message, L"own words");

    struct {
        DWORD error;
        HRESULT code;
    } const rows[] = {{ERROR_ACCESS_DENIED, E_ACCESSDENIED},
                      {12029, HRESULT_FROM_WIN32(12029)},
                      {ERROR_SUCCESS, E_FAIL}}; // A failure without a code must not be a success.
    for (const auto& row : rows) {
        SetLastError(row.error);
        const Outcome last = OutcomeOf([] { throw LastErrorException(); });
        EXPECT_HRESULT(row.code, last.code);
        EXPECT_TRUE(last.message.starts_with(L"GetLastError " + std::to_wstring(row.error) + L": "));
    }

    EXPECT_EQ(OutcomeOf([] { throw HResultException(E_ABORT); }).message, HResultText(E_ABORT));
    const Outcome http = OutcomeOf([] { throw HttpException(nullptr); });
    EXPECT_EQ(http.status, 0u);
    EXPECT_TRUE(http.message.starts_with(L"HTTP (failed to get status information): GetLastError "));
}

TEST(TextTest, Compares) {
    struct {
        const wchar_t* text;
        const wchar_t* other;
        int length;
        int sign;
    } const rows[] = {
        {L"", L"", 0, 0},           {L"", L"abc", 0, 0},       {L"a", L"abc", 0, 1},
        {L"", L"a", 1, -1},         {L"abc", L"ABC", 3, 0},    {L"abc", L"abcdef", 3, 0},
        {L"abc", L"abcdef", 4, -1}, {L"abd", L"abcdef", 3, 1}, {L"abc", L"abc", 29, 0},
        {L"abcd", L"abc", 29, 1},   {L"abc", L"abc", -1, 1},   {L"É", L"é", 1, 0},
        {L"co-op", L"coop", 5, -1}, {L"", L"\x200D", 1, -1},   {L"\x200D", L"", 0, 1},
        {L"a\x200D", L"a", 1, 0},   {L"a", L"b", 1, -1},       {L"https://x", L"HTTPS://x/y", 9, 0},
    };
    for (const auto& row : rows) {
        const int result = StringCompare(row.text, row.other, row.length);
        const bool is_right = row.sign == 0                        ? result == 0
                              : row.text == std::wstring(L"co-op") ? result != 0
                                                                   : result * row.sign > 0;
        EXPECT_TRUE(is_right) << ToUtf8(row.text) << " and " << ToUtf8(row.other) << ", " << row.length << ": "
                              << result;
    }
    // Neither text is read past its end, even if it is the middle of another text.
    const std::wstring whole = L"abcX";
    EXPECT_EQ(StringCompare(std::wstring_view(whole).substr(0, 3), L"abcY", 3), 0);
    EXPECT_EQ(StringCompare(L"abc", std::wstring_view(whole).substr(0, 3), 10), 0);
    EXPECT_TRUE(EqualsNoCase(L"File", L"fILE"));
    EXPECT_FALSE(EqualsNoCase(L"file", L"files"));
    EXPECT_FALSE(EqualsNoCase(L"files", L"file"));
}

TEST(TextTest, ConvertsUtf8) {
    struct {
        const wchar_t* wide;
        const char* bytes;
        bool is_reversible;
    } const rows[] = {
        {L"", "", true},
        {L"plain", "plain", true},
        {L"ü世", "\xC3\xBC\xE4\xB8\x96", true},
        {L"\xD83D\xDE00", "\xF0\x9F\x98\x80", true},
        {L"\xFFFE\xFFFF", "\xEF\xBF\xBE\xEF\xBF\xBF", true},
        {L"a\xD83D", "a\xEF\xBF\xBD", false},
        {L"\xDE00z", "\xEF\xBF\xBDz", false},
        {L"\xDE00\xD83D", "\xEF\xBF\xBD\xEF\xBF\xBD", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ToUtf8(row.wide), row.bytes);
        if (row.is_reversible) {
            EXPECT_EQ(FromUtf8(row.bytes), row.wide);
        }
    }
    EXPECT_EQ(ToUtf8(std::wstring_view(L"a\0b", 3)), std::string("a\0b", 3));
    for (const char* const broken : {"a\x80", "a\xC3", "a\xFF", "a\xE4\xB8", "a\xED\xA0\x80"}) {
        const std::wstring text = FromUtf8(broken);
        EXPECT_TRUE(text.starts_with(L"a\xFFFD")) << ToUtf8(text);
    }
}

TEST(SecretTest, IsMaskedWhileItLives) {
    const std::wstring token = L"sl.u.0123456789abcdef";
    const Secret other(L"short");
    {
        const Secret secret(token);
        const Secret again(token);
        EXPECT_EQ(WithoutSecrets(L"a " + token + L" b" + token), L"a *** b***");
        const Exception exception(token, {.words = L"w " + token, .summary = token + L"/"});
        EXPECT_EQ(exception.Message(), L"***");
        EXPECT_EQ(exception.Reason().words, L"w ***");
        EXPECT_EQ(exception.Reason().summary, L"***/");
    }
    EXPECT_EQ(WithoutSecrets(token), token);
    EXPECT_EQ(WithoutSecrets(L"a short one"), L"a short one");
}

} // namespace
