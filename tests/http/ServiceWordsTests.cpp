// The service's words as a person reads them.

#include "http/ServiceWords.h"

#include <gtest/gtest.h>

namespace {

TEST(ServiceWordsTest, AreShortAndPlain) {
    EXPECT_EQ(Http::PlainWords(L"path/not_found/.."), L"path/not_found/..");
    EXPECT_EQ(Http::PlainWords(std::wstring(5'000'000, L'x')), std::wstring(300, L'x'));
    EXPECT_EQ(Http::PlainWords(std::wstring(299, L'x') + L"\xD83D\xDE00"), std::wstring(299, L'x')) << "no half pair";
    EXPECT_EQ(Http::PlainWords(L"a\r\nb\tc\x1b[2J\x85\x2028"), L"a  b c [2J");
    EXPECT_EQ(Http::PlainWords(L"a\x202E\x2066\x200F\x61C\xFEFF"
                               L"b"),
              L"ab");
    EXPECT_EQ(Http::PlainWords(L"  \n "), L"");
}

TEST(ServiceWordsTest, AreUnescaped) {
    EXPECT_EQ(Http::ErrorSummary(LR"({"error_summary": "a\\b \"c\" \/d \u00e9\ud83d\ude00", "x": "y"})"),
              L"a\\b \"c\" /d \xe9\xD83D\xDE00");
    EXPECT_EQ(Http::ErrorSummary(LR"({"error_summary": "a\nb\u202Ec"})"), L"a bc");
    EXPECT_EQ(Http::ErrorSummary(LR"({"error_summary": "odd \uzzzz"})"), L"odd \xFFFD");
    for (const wchar_t* const text :
         {LR"({"error_summary": "cut)", LR"({"error_summary": "cut\)", LR"({"error_summary": "cut\u12)",
          LR"({"error_summary")", L"", LR"({"error_summary" "x"})", LR"({"error_summary": null, "path/not_found": 1})"})
        EXPECT_EQ(Http::ErrorSummary(text), L"") << text;
}

} // namespace
