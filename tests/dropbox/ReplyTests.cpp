// What replies say: JSON, metadata, dates.

#include "dropbox/DropboxTest.h"

#include "core/trace/Text.h"
#include "dropbox/DateTime.h"
#include "dropbox/Json.h"
#include "dropbox/Metadata.h"

using namespace Tests;
using Dropbox::Utility::JsonDocument;

namespace {

class ReplyTest : public DropboxTest {
protected:
    /// Makes the service reply with these bytes, using a file, and parses what arrives.
    void Parse(JsonDocument& o_document, const std::string& i_bytes) {
        MakeFile(L"/reply.json", i_bytes);
        auto response =
            Dropbox::Object::Create({._name = L"reply.json", ._path = L"/reply.json", ._is_folder = false}, m_web)
                ->OpenRead();
        Dropbox::Utility::ParseJson(o_document, response);
    }
};

TEST_F(ReplyTest, SaysWhatIsWrongWithJsonAndWhere) {
    struct {
        const char* json;
        const wchar_t* text;
        std::size_t offset; // In characters.
    } const rows[] = {
        {"", L"Text only contains white space(s)", 0},
        {" \t\r\n", L"Text only contains white space(s)", 4},
        {"true", L"Expect either an object or array at root", 0},
        {"  \"text\"", L"Expect either an object or array at root", 2},
        {"12", L"Expect either an object or array at root", 0},
        {"<html>", L"Expect either an object or array at root", 0},
        {"{} {}", L"Nothing should follow the root object or array.", 3},
        {"[]x", L"Nothing should follow the root object or array.", 2},
        {"{1: 2}", L"Name of an object member must be a string", 1},
        {"{\"a\" 1}", L"There must be a colon after the name of object member", 5},
        {"{\"a\": 1 \"b\"}", L"Must be a comma or '}' after an object member", 8},
        {"[1 2]", L"Must be a comma or ']' after an array element.", 3},
        {"[tru]", L"Invalid value", 4},
        {"[nul]", L"Invalid value", 4},
        {"[,]", L"Expect a value here.", 1},
        {"{\"a\": }", L"Expect a value here.", 6},
        {"[\"\\u12G4\"]", L"Incorrect hex digit after \\u escape", 2},
        {"[\"\\uD800\\uD800\"]", L"The second \\u in surrogate pair is invalid", 2},
        {"[\"\\uD800x\"]", L"Missing the second \\u in surrogate pair", 2},
        {"[\"\\x\"]", L"Unknown escape character", 2},
        {"[\"a\x01\"]", L"Incorrect unescaped character in string", 3},
        {"[\"abc", L"lacks ending quotation before the end of string", 5},
        {"[1e999]", L"Number too big to store in double", 1},
        {"[1.]", L"At least one digit in fraction part", 3},
        {"[1e]", L"At least one digit in exponent", 3},
        {"[\"\xC3\xBC\xE4\xB8\x96\" x]", L"Must be a comma or ']' after an array element.", 6},
        {"{\"a\": [1, 2", L"Must be a comma or ']' after an array element.", 11},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.json);
        JsonDocument document;
        const Outcome outcome = OutcomeOf([&] { Parse(document, row.json); });
        EXPECT_EQ(outcome.type, "Exception");
        EXPECT_EQ(outcome.message, std::wstring(L"JSON document parse error: ") + row.text + L"\nJSON line: " +
                                       std::to_wstring(row.offset));
    }
    EXPECT_TRUE(m_log.Has("Dropbox::Utility::ParseJson<-- Expression \"!json.HasParseError()\" caused throwing \"JSON "
                          "document parse error: Text only contains white space(s)\nJSON line: 0\"\n"));
}

TEST_F(ReplyTest, DepthIsNoDanger) {
    JsonDocument document;
    EXPECT_EQ(OutcomeOf([&] { Parse(document, std::string(1'000'000, '[')); }).type, "Exception");
    JsonDocument deep;
    Parse(deep, std::string(100'000, '[') + std::string(100'000, ']'));
    EXPECT_TRUE(deep.IsArray());
}

TEST_F(ReplyTest, IsReadInOnePiece) {
    // Characters of two, three and four bytes, at every position across the boundary between two reads of 1024 bytes.
    const std::string characters = "\xC3\xBC\xE4\xB8\x96\xF0\x9F\x98\x80";
    for (std::size_t before = 1010; before < 1024; ++before) {
        const std::string text = std::string(before, 'a') + characters + std::string(1100, 'b');
        JsonDocument document;
        Parse(document, "[\"" + text + "\"]");
        EXPECT_EQ(ToUtf8(Dropbox::Utility::Text(document[0])), text);
    }
    JsonDocument document;
    Parse(document, "\t{\"\\u00fc\": [\"a\\u0000b\", \"\\ud83d\\ude00\", 18446744073709551615, true, null]}\n");
    const auto& values = Dropbox::Utility::Member(document, L"ü");
    EXPECT_EQ(Dropbox::Utility::Text(values[0]), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Dropbox::Utility::Text(values[1]), L"\xD83D\xDE00");
    EXPECT_EQ(values[2].GetUint64(), 18446744073709551615u);
}

TEST_F(ReplyTest, BecomesARecord) {
    constexpr std::uint64_t modified = 130'759'194'380'000'000; // 2015-05-12T15:50:38Z
    struct {
        const char* name;
        const wchar_t* json;
        const wchar_t* forced_kind;
        SharePoint::ObjectInformation expected;
    } const rows[] = {
        {"file",
         LR"({".tag": "file", "name": "a", "path_display": "/A", "server_modified": "2015-05-12T15:50:38Z",
                      "size": 18446744073709551615})",
         nullptr,
         {L"a", L"/A", 0, modified, 18446744073709551615u, false, false}},
        {"capitals",
         LR"({".tag": "FILE", "name": "a", "server_modified": "2015-05-12T15:50:38Z", "size": 1})",
         nullptr,
         {L"a", L"", 0, modified, 1, false, false}},
        {"folder",
         LR"({".tag": "folder", "name": "ü", "path_display": "/ü", "size": 5})",
         nullptr,
         {L"ü", L"/ü", 0, 0, 0, true, false}},
        {"deleted",
         LR"({".tag": "deleted", "name": "a", "path_display": "/a"})",
         nullptr,
         {L"a", L"/a", 0, 0, 0, true, true}},
        {"no kind", LR"({"name": "a"})", nullptr, {L"a", L"", 0, 0, 0, true, true}},
        {"forced folder", LR"({"name": "a"})", L"folder", {L"a", L"", 0, 0, 0, true, false}},
        {"forced file",
         LR"({".tag": "folder", "name": "a", "server_modified": "2015-05-12T15:50:38Z", "size": 0})",
         L"file",
         {L"a", L"", 0, modified, 0, false, false}},
        {"impossible date",
         LR"({".tag": "file", "name": "a", "server_modified": "2015-13-12T15:50:38Z", "size": 0})",
         nullptr,
         {L"a", L"", 0, 0, 0, false, false}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        JsonDocument document;
        document.ParseText(row.json);
        const auto record = Dropbox::ReadMetadata(document, row.forced_kind);
        EXPECT_EQ(record._name, row.expected._name);
        EXPECT_EQ(record._path, row.expected._path);
        EXPECT_EQ(record._created, 0u);
        EXPECT_EQ(record._modified, row.expected._modified);
        EXPECT_EQ(record._size, row.expected._size);
        EXPECT_EQ(record._is_folder, row.expected._is_folder);
        EXPECT_EQ(record._is_unknown, row.expected._is_unknown);
    }
}

TEST_F(ReplyTest, WithoutWhatItPromisesIsAnException) {
    const struct {
        const char* name;
        const wchar_t* json;
    } rows[] = {
        {"no name", LR"({".tag": "folder"})"},
        {"name is a number", LR"({".tag": "folder", "name": 1})"},
        {"path is null", LR"({".tag": "folder", "name": "a", "path_display": null})"},
        {"no size", LR"({".tag": "file", "name": "a", "server_modified": "2015-05-12T15:50:38Z"})"},
        {"size is a text", LR"({".tag": "file", "name": "a", "server_modified": "2015-05-12T15:50:38Z", "size": "1"})"},
        {"size is negative",
         LR"({".tag": "file", "name": "a", "server_modified": "2015-05-12T15:50:38Z", "size": -1})"},
        {"no date", LR"({".tag": "file", "name": "a", "size": 1})"},
        {"no date at all", LR"({".tag": "file", "name": "a", "size": 1, "server_modified": "yesterday"})"},
        {"no object", LR"([1])"},
        {"kind is an object", LR"({".tag": {}, "name": "a"})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        JsonDocument document;
        document.ParseText(row.json);
        EXPECT_EQ(OutcomeOf([&] { Dropbox::ReadMetadata(document); }).type, "Exception");
    }
    Service::AddFault(R"({"path": "2/users/get_current_account", "body": "{\"account_id\": 1}"})");
    EXPECT_EQ(OutcomeOf([&] { m_web->Refresh(); }).type, "Exception");
    EXPECT_EQ(m_web->GetUserInformation()._id, L"");
}

TEST_F(ReplyTest, TellsTime) {
    constexpr std::uint64_t second = 10'000'000; // In file time.
    constexpr std::uint64_t day = 24 * 3600 * second;
    struct {
        const wchar_t* text;
        std::uint64_t time;
    } const rows[] = {
        {L"1601-01-01T00:00:00Z", 0},
        {L"1601-01-02T00:00:01Z", day + second},
        {L"2015-05-12T15:50:38Z", 130'759'194'380'000'000},
        {L"2015-05-12T15:50:38.5Z", 130'759'194'380'000'000},
        {L"2015-05-12T15:50:38", 130'759'194'380'000'000},
        {L"2015-05-12T15:50:38+02:00", 130'759'194'380'000'000},
        {L"2016-02-29T23:59:59Z", 131'012'639'990'000'000},
        {L"2015-13-12T15:50:38Z", 0},
        {L"2015-02-30T15:50:38Z", 0},
        {L"1600-01-01T00:00:00Z", 0},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Dropbox::Utility::ParseDateTime(row.text), row.time) << ToUtf8(row.text);

    for (const wchar_t* const text :
         {L"", L"2015-05-12 15:50:38", L"2015-05-12T15:50", L"2015/05/12T15:50:38Z", L"x"}) {
        const Outcome outcome = OutcomeOf([&] { Dropbox::Utility::ParseDateTime(text); });
        EXPECT_EQ(outcome.type, "Exception") << ToUtf8(text);
        EXPECT_EQ(outcome.message, std::wstring(L"Date-time format returned by server has unexpected format: ") + text);
    }
    EXPECT_TRUE(m_log.Has("Dropbox::Utility::ParseDateTime<-- Expression \"6 == parsed_items\" caused throwing \""));
}

} // namespace
