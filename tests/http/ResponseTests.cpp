// Replies: the status rule, headers, bodies.

#include "http/HttpTest.h"

#include "core/trace/Secret.h"
#include "core/trace/Trace.h"
#include "support/Content.h"

using namespace Tests;

namespace {

class ResponseTest : public HttpTest {
protected:
    static void AddFault(const std::string& i_members) {
        Service::AddFault(R"({"path": "2/test", )" + i_members + "}");
    }
};

TEST_F(ResponseTest, AppliesTheStatusRule) {
    struct {
        unsigned status;
        bool throws;
        bool is_diagnosed;
    } const rows[] = {
        {199, true, false},  {200, false, false}, {204, false, false}, {302, false, false},
        {399, false, false}, {400, true, true},   {404, true, true},   {500, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        const std::string status = std::to_string(row.status);
        const LogCapture log;
        AddFault("\"status\": " + status + R"(, "reason": "Odd word", "headers": {"X-Note": "n"}, "body": "said ü")");
        const Outcome outcome = OutcomeOf([&] { Send(); });

        const std::string lines = log.Messages();
        const auto diagnostic = lines.find("Http::Session::SendRequest Unexpected HTTP code:\nhttps://" DROPBOX_API_HOST
                                           "/2/test\nHTTP/1.1 " +
                                           status + " Odd word\n");
        const auto sentence = lines.find("Http::Session::SendRequest<-- Expression \"200 <= status && status < 400\" "
                                         "caused throwing \"HTTP " +
                                         status + ": Odd word\"\n");
        EXPECT_EQ(outcome.type, row.throws ? "HttpException" : "");
        EXPECT_EQ(outcome.status, row.throws ? row.status : 0);
        EXPECT_EQ(outcome.message, row.throws ? L"HTTP " + std::to_wstring(row.status) + L": Odd word" : L"");
        EXPECT_EQ(sentence != std::string::npos, row.throws);
        EXPECT_EQ(diagnostic != std::string::npos, row.is_diagnosed);
        if (row.is_diagnosed) {
            EXPECT_LT(diagnostic, sentence);
            EXPECT_NE(lines.find("X-Note: n\n", diagnostic), std::string::npos);
            EXPECT_NE(lines.find("\n\nsaid ü\n", diagnostic), std::string::npos) << lines;
        }
    }
}

TEST_F(ResponseTest, AppliesTheStatusRuleToUploads) {
    struct {
        unsigned status;
        const char* diagnostic;
    } const rows[] = {{199, ""}, {200, ""}, {399, ""}, {400, "Http::Request::Send Unexpected HTTP code:\nhttps://"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        const LogCapture log;
        Service::AddFault(R"({"path": "2/files/upload", "status": )" + std::to_string(row.status) + "}");
        auto request = m_session.CreateRequest(L"", 1);
        request.Write("x", 1);
        const bool is_success = row.status >= 200 && row.status < 400;
        EXPECT_EQ(OutcomeOf([&] { request.Send(); }).status, is_success ? 0 : row.status);
        EXPECT_TRUE(log.Has(row.diagnostic));
        EXPECT_EQ(log.Has("Unexpected HTTP code"), row.diagnostic[0] != '\0');
    }
}

TEST_F(ResponseTest, ReportsTheServicesWord) {
    struct {
        const char* name;
        const char* body; // As JSON text.
        const wchar_t* summary;
    } const rows[] = {
        {"plain", R"("{\"error_summary\": \"path/not_found/..\", \"error\": {}}")", L"path/not_found/.."},
        {"without blanks", R"("{\"error\":{},\"error_summary\":\"a/b\"}")", L"a/b"},
        {"none", R"("{\"error\": 1}")", L""},
        {"cut off", R"("{\"error_summary\": \"pa")", L""},
        {"no JSON", R"("Error in call")", L""},
        {"empty", R"("")", L""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AddFault(std::string(R"("status": 409, "reason": "Conflict", "body": )") + row.body);
        const Outcome outcome = OutcomeOf([&] { Send(); });
        EXPECT_EQ(outcome.message, L"HTTP 409: Conflict");
        EXPECT_EQ(outcome.error_summary, row.summary);
    }
}

TEST_F(ResponseTest, ReportsTheFirstLineOfPlainText) {
    struct {
        const char* type;
        std::string body; // As written in JSON.
        std::wstring sentence;
    } const rows[] = {
        {"text/plain", R"(Error in call to API function)", L"Error in call to API function"},
        {"Text/Plain; charset=utf-8", R"(First\r\nsecond)", L"First"},
        {"text/plain", std::string(500, 'w'), std::wstring(300, L'w')},
        {"text/plain", std::string(290, 'w') + "sl.0123456789abcdef", std::wstring(290, L'w') + L"***"},
        {"text/html", "<html>", L""},
        {"text/plain", "", L""},
    };
    const Secret token(L"sl.0123456789abcdef");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type + row.body);
        AddFault(R"("status": 400, "headers": [["Content-Type", ")" + std::string(row.type) + R"("]], "body": ")" +
                 row.body + "\"");
        EXPECT_EQ(OutcomeOf([&] { Send(); }).error_summary, row.sentence);
    }
}

TEST_F(ResponseTest, ReadsNoMoreOfAFailedReplyThanItNeeds) {
    const auto summary = [&](std::size_t i_padding) {
        AddFault(R"("status": 409, "body": "{\"x\": \")" + std::string(i_padding, 'x') +
                 R"(\", \"error_summary\": \"found\"}")");
        return OutcomeOf([&] { Send(); }).error_summary;
    };
    EXPECT_EQ(summary(200'000), L"found") << "the log tells all of it";
    Detail::g_log_enabled = false;
    EXPECT_EQ(summary(60'000), L"found");
    EXPECT_EQ(summary(200'000), L"");
    Detail::g_log_enabled = true;
}

TEST_F(ResponseTest, ReportsTheStatusOfABrokenReply) {
    AddFault(R"("status": 500, "reason": "Broken", "body": "0123456789", "truncate_body": 5)");
    EXPECT_EQ(OutcomeOf([&] { Send(); }).message, L"HTTP 500: Broken");
    EXPECT_TRUE(m_log.Has("\n01234\n"));
}

TEST_F(ResponseTest, ReadsHeaders) {
    const std::string at_edge(127, 'e'); // 256 bytes with its terminator: it fills the first buffer exactly.
    const std::string over_edge(128, 'o');
    const std::string longest(1000, 'l');
    AddFault(R"("status": 200, "headers": [["X-Value", "one"], ["x-value", ")" + at_edge + R"("], ["X-VALUE", ")" +
             over_edge + R"("], ["X-Other", "other"], ["X-Value", ")" + longest + R"("], ["X-Value", "last"]])");
    const Http::Response response = Send();
    const auto wide = [](const std::string& i_text) { return std::wstring(i_text.begin(), i_text.end()); };
    const std::vector<std::wstring> expected = {L"one", wide(at_edge), wide(over_edge), wide(longest), L"last"};
    EXPECT_EQ(response.GetHeaders(L"X-Value"), expected);
    EXPECT_EQ(response.GetHeaders(L"x-other"), std::vector<std::wstring>{L"other"});
    EXPECT_TRUE(response.GetHeaders(L"X-Missing").empty());
    EXPECT_TRUE(response.GetHeaders(std::wstring(300, L'n')).empty());

    const std::wstring raw = response.GetHeaders();
    EXPECT_TRUE(raw.starts_with(std::wstring(L"HTTP/1.1 200 OK\0", 16)));
    EXPECT_NE(raw.find(std::wstring(L"\0X-Other: other\0", 16)), std::wstring::npos);
    EXPECT_TRUE(raw.ends_with(L'\0'));
}

TEST_F(ResponseTest, ReadsBodies) {
    const std::string text = "0123456789";
    struct {
        const char* name;
        const char* fault;
        std::size_t piece_size;
        bool is_whole;
    } const rows[] = {
        {"at once", R"("body": "0123456789")", 65536, true},
        {"in pieces", R"("body": "0123456789")", 3, true},
        {"a piece that fits", R"("body": "0123456789")", 5, true},
        {"chunked", R"("body": "0123456789", "chunked": true, "piece": 4)", 65536, true},
        {"chunked, beside a length", R"("body": "0123456789", "chunked": true, "headers": {"Content-Length": "3"})",
         65536, true},
        {"slow", R"("body": "0123456789", "piece": 4, "slow_body_ms": 5)", 65536, true},
        {"cut", R"("body": "0123456789", "truncate_body": 9)", 65536, false},
        {"cut at the start", R"("body": "0123456789", "truncate_body": 0)", 65536, false},
        {"cut between pieces", R"("body": "0123456789", "truncate_body": 6)", 3, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AddFault(std::string("\"status\": 200, ") + row.fault);
        auto response = Send();
        std::string body;
        const Outcome outcome = OutcomeOf([&] { body = ReadAll(response, row.piece_size); });
        EXPECT_EQ(body, row.is_whole ? text : "");
        EXPECT_HRESULT(row.is_whole ? S_OK : HRESULT_FROM_WIN32(ERROR_INTERNET_CONNECTION_ABORTED), outcome.code);
        if (row.is_whole) {
            EXPECT_EQ(response.Read(body.data(), body.size()), 0u) << "the end stays the end";
        }
    }
    // The session still works after all of this.
    AddFault(R"("status": 200, "body": "still here")");
    auto response = Send();
    EXPECT_EQ(ReadAll(response), "still here");
}

TEST_F(ResponseTest, AbandonsADownload) {
    const std::string content = RandomBytes(3'000'000);
    WriteBytes(Service::LocalPath(L"/big.bin"), content);
    auto session = Open(L"" DROPBOX_CONTENT_HOST);
    session.SetAuthorizationHeader(Service::AuthorizationHeader());
    const wchar_t* accept_types[] = {L"application/octet-stream", nullptr};
    const auto download = [&] {
        return session.SendRequest(L"2/files/download", accept_types, L"Dropbox-API-Arg: {\"path\": \"/big.bin\"}\n",
                                   nullptr);
    };
    char piece[1000];
    EXPECT_GT(download().Read(piece, sizeof piece), 0u);
    auto response = download();
    EXPECT_EQ(Sha256(ReadAll(response)), Sha256(content));
}

} // namespace
