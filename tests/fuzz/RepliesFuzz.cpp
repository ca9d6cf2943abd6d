// What the service's replies say: JSON, records, dates, and the arguments that go out.

#include "fuzz/FuzzInput.h"

#include "core/trace/Exceptions.h"
#include "core/trace/Text.h"
#include "dropbox/ApiCalls.h"
#include "dropbox/DateTime.h"
#include "dropbox/Json.h"
#include "dropbox/Metadata.h"
#include "dropbox/NameRules.h"
#include "dropbox/RemotePath.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <optional>

namespace Fuzz {
namespace {

using Dropbox::Utility::JsonDocument;

const Language json = {
    {R"({".tag":"file","name":"a.pdf","path_lower":"/docs/a.pdf","path_display":"/Docs/a.pdf","id":"id:x",)"
     R"("client_modified":"2015-05-12T15:50:38Z","server_modified":"2015-05-12T15:50:38Z","rev":"a1c1","size":7212})",
     R"({".tag":"folder","name":"math","path_display":"/Homework/math"})",
     R"({"entries":[{".tag":"deleted","name":"x"}],"cursor":"ZtkX9_EHj3","has_more":false})",
     R"({"error_summary":"path/not_found/..","error":{".tag":"path","path":{".tag":"not_found"}}})",
     R"({"account_id":"dbid:AAH4f99T","name":{"display_name":"Franz Ferdinand"},"a":[1,-2.5e3,true,null,"\u00e9\ud83d\ude00"]})"},
    {"{",
     "}",
     "[",
     "]",
     ":",
     ",",
     "\"",
     "null",
     "true",
     "-0",
     "1e999",
     "18446744073709551615",
     "-1",
     "1.5",
     "\"size\":",
     "\"name\":",
     "\".tag\":\"file\"",
     "\".tag\":\"FOLDER\"",
     "\\u0000",
     "\\ud800",
     "\\",
     "\xEF\xBB\xBF",
     "\"path_display\":7,",
     "{}",
     "[]",
     "\xC3",
     "\xF0\x9F\x98\x80",
     " ",
     "\n",
     "/"}};

/// The document if the text is JSON. Throws nothing but an Exception.
std::optional<JsonDocument> Parse(const std::wstring& i_text) {
    JsonDocument document;
    try {
        document.ParseText(i_text);
    } catch (const Exception&) {
        return std::nullopt; // An assertion of the library.
    }
    EXPECT_LE(document.ErrorOffset(), i_text.size());
    EXPECT_EQ(document.HasParseError(), document.ParseErrorText() != nullptr);
    if (document.HasParseError())
        return std::nullopt;
    EXPECT_TRUE(document.IsObject() || document.IsArray());
    return document;
}

std::wstring Write(const JsonDocument& i_document) {
    rapidjson::GenericStringBuffer<rapidjson::UTF16<wchar_t>> buffer;
    rapidjson::Writer<decltype(buffer), rapidjson::UTF16<wchar_t>, rapidjson::UTF16<wchar_t>> writer(buffer);
    i_document.Accept(writer);
    return {buffer.GetString(), buffer.GetSize() / sizeof(wchar_t)};
}

/// The library reads a fraction to within a unit in its last place; the service sends none.
bool HasFraction(const Dropbox::Utility::JsonValue& i_value) {
    if (i_value.IsArray())
        return std::any_of(i_value.Begin(), i_value.End(), &HasFraction);
    if (i_value.IsObject())
        return std::any_of(i_value.MemberBegin(), i_value.MemberEnd(),
                           [](const auto& i_member) { return HasFraction(i_member.value); });
    return i_value.IsDouble();
}

TEST(RepliesFuzz, WhatIsReadAsJsonIsTheSameWhenItIsWrittenAndReadAgain) {
    std::uint64_t good = 0;
    ForInputs(json, [&](Random&, const std::string& i_input) {
        const auto document = Parse(FromUtf8(i_input));
        if (!document)
            return;
        ++good;
        const auto again = Parse(Write(*document));
        ASSERT_TRUE(again);
        EXPECT_TRUE(HasFraction(*document) || *again == *document || Write(*again) == Write(*document));
    });
    EXPECT_GT(good, InputCount() / 50) << "the inputs test only what is refused";
}

TEST(RepliesFuzz, ARecordIsWhatTheObjectSaysOrIsRefused) {
    std::uint64_t good = 0;
    ForInputs(json, [&](Random&, const std::string& i_input) {
        const auto document = Parse(FromUtf8(i_input));
        if (!document)
            return;
        for (const wchar_t* const forced : {static_cast<const wchar_t*>(nullptr), L"file", L"folder"})
            try {
                const auto information = Dropbox::ReadMetadata(*document, forced);
                ++good;
                ASSERT_TRUE((*document)[L"name"].IsString());
                EXPECT_EQ(information._name, Dropbox::Utility::Text((*document)[L"name"]));
                if (!information._is_unknown && !information._is_folder) {
                    EXPECT_EQ(information._size, (*document)[L"size"].GetUint64());
                }
            } catch (const Exception&) {
                // Refused.
            }
        try {
            const auto written = Dropbox::ReadWritten(*document, L"file", L"/Docs/a.pdf");
            EXPECT_TRUE(Dropbox::IsSamePath(L"/docs/A.PDF", written._path));
            EXPECT_FALSE(written._is_folder);
        } catch (const Exception&) {
            // Refused.
        }
    });
    EXPECT_GT(good, InputCount() / 50);
}

const Language dates = {
    {"2015-05-12T15:50:38Z", "1601-01-01T00:00:00Z", "9999-12-31T23:59:59Z", "2016-02-29T00:00:00.5Z"},
    {"0", "9", "-", "+", "T", "Z", ":", " ", "99999999999", "00", "1", "\xD9\xA1"}};

TEST(RepliesFuzz, ADateIsReadAsItIsOrRefused) {
    ForTexts(dates, [](Random&, const std::wstring& i_input) {
        try {
            const FILETIME latest{0xFFFFFFFF, 0x7FFFFFFF}; // The latest time that SystemTimeToFileTime returns.
            EXPECT_LE(Dropbox::Utility::ParseDateTime(i_input.c_str()),
                      std::uint64_t{latest.dwHighDateTime} << 32 | latest.dwLowDateTime);
        } catch (const Exception&) {
            // It has another format.
        }
    });
    ForChances([](Random& io_random) {
        const std::uint64_t second = io_random.Below(250'000'000'000); // In the years 1601 to 9522.
        const FILETIME time{static_cast<DWORD>(second * 10'000'000), static_cast<DWORD>((second * 10'000'000) >> 32)};
        SYSTEMTIME parts{};
        ASSERT_TRUE(FileTimeToSystemTime(&time, &parts));
        wchar_t text[32];
        swprintf(text, std::size(text), L"%04d-%02d-%02dT%02d:%02d:%02dZ", parts.wYear, parts.wMonth, parts.wDay,
                 parts.wHour, parts.wMinute, parts.wSecond);
        EXPECT_EQ(Dropbox::Utility::ParseDateTime(text), second * 10'000'000);
    });
}

const Language paths = {{"/Docs/a.pdf", "/\xC3\xA9t\xC3\xA9/b c.txt", "/x", "/e\xCC\x81", "/a\"b", "/a\\u0041",
                         "/desktop.ini", "/\xF0\x9F\x98\x80/~$a.docx"},
                        {"/", "\\", "\"", "\\\"", "\\u0022", "\",\"path\": \"/other", "\n", " ", ".", "..", "\t",
                         "\xF0\x9F\x98\x80", "~", "\\/", "\\\\", "/*", "a"}};

/// How a reader of UTF-8 or of "\uXXXX" reads a header's text.
std::wstring Unescaped(std::wstring_view i_text) {
    std::wstring text;
    for (std::size_t at = 0; at < i_text.size(); ++at)
        if (i_text.substr(at, 2) == L"\\u" && at + 6 <= i_text.size()) {
            text += static_cast<wchar_t>(std::wcstoul(std::wstring(i_text.substr(at + 2, 4)).c_str(), nullptr, 16));
            at += 5;
        } else {
            text += i_text[at];
        }
    return text;
}

TEST(RepliesFuzz, TheArgumentsOfACallNameThePathOrNoPathAtAll) {
    ForTexts(paths, [](Random&, const std::wstring& i_input) {
        std::string arguments;
        try {
            arguments =
                Dropbox::CheckedArguments("{\"path\": \"" + ToUtf8(i_input) + "\",\"autorename\": false}", {i_input});
        } catch (const Exception&) {
            return;
        }
        const auto document = Parse(FromUtf8(arguments));
        if (!document)
            return; // The service refuses it.
        ASSERT_EQ(document->MemberCount(), 2u);
        EXPECT_EQ(Dropbox::Utility::Text((*document)[L"path"]), i_input);
        const std::wstring header = Dropbox::DownloadArgument(i_input);
        EXPECT_EQ(std::ranges::count(header, L'\n'), 1);
        EXPECT_TRUE(std::ranges::all_of(header, [](wchar_t i_unit) { return i_unit < 0x80; }));
    });
}

TEST(RepliesFuzz, AHeadersTextIsAsciiAndStandsForTheSame) {
    ForTexts(paths, [](Random&, const std::wstring& i_input) {
        const std::wstring header = Dropbox::HeaderText(i_input, 1252);
        EXPECT_TRUE(std::ranges::all_of(header, [](wchar_t i_unit) { return i_unit < 0x80; }));
        if (i_input.find(L"\\u") == i_input.npos) {
            EXPECT_EQ(Unescaped(header), i_input);
        }
    });
}

TEST(RepliesFuzz, PathsAreComparedFairly) {
    ForTexts(paths, [](Random& io_random, const std::wstring& i_input) {
        const std::wstring other = MutatedText(io_random, paths);
        EXPECT_TRUE(Dropbox::IsSamePath(i_input, i_input));
        EXPECT_EQ(Dropbox::IsSamePath(i_input, other), Dropbox::IsSamePath(other, i_input));
        const bool is_even =
            std::ranges::none_of(i_input, [](wchar_t i_unit) { return i_unit < L' ' || (i_unit & 0xF800) == 0xD800; });
        if (is_even) {
            EXPECT_TRUE(Dropbox::IsWellFormed(i_input));
        }
        if (Dropbox::TakesName(i_input)) {
            EXPECT_TRUE(Dropbox::CanBeSent(i_input));
            EXPECT_LE(i_input.size(), 255u);
            EXPECT_EQ(i_input.find_first_of(L"/\\\""), i_input.npos);
        }
    });
}

TEST(RepliesFuzz, TextSurvivesItsConversion) {
    ForTexts(paths, [](Random&, const std::wstring& i_input) {
        const std::wstring once = FromUtf8(ToUtf8(i_input));
        EXPECT_EQ(once, FromUtf8(ToUtf8(once)));
        if (Dropbox::IsWellFormed(i_input)) {
            EXPECT_EQ(once, i_input);
        }
    });
}

} // namespace
} // namespace Fuzz
