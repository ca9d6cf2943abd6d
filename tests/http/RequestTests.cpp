// What goes over the wire: the heads of both shapes of request, and streamed bodies.

#include "http/HttpTest.h"

#include "core/trace/Secret.h"
#include "core/trace/Text.h"
#include "support/Content.h"

#include <algorithm>

using namespace Tests;

namespace {

class RequestTest : public HttpTest {
protected:
    static Service::Request OnlyRequest() {
        const auto requests = Service::Requests();
        EXPECT_EQ(requests.size(), 1u);
        return requests.empty() ? Service::Request() : requests.front();
    }

    /// The authorization as WinINet puts it on the wire.
    static std::string AuthorizationField() {
        const std::string text = ToUtf8(Service::AuthorizationHeader());
        const std::size_t value = text.find(':') + 1;
        return text.substr(0, value) + " " + text.substr(value, text.size() - value - 1) + "\r\n";
    }
};

TEST_F(RequestTest, SendsHeadersInOrder) {
    struct {
        const char* name;
        const wchar_t* accept;
        const wchar_t* extra_headers;
        const char* body;
        const char* content_length;
        const char* extra_fields; // Directly after the authorization.
    } const rows[] = {
        {"nothing but the call", L"*/*", nullptr, nullptr, "0", ""},
        {"empty body", L"*/*", nullptr, "", "0", ""},
        {"body", L"application/json; odata=verbose", L"Content-Type: application/json\n", "{\"a\": 1}", "8",
         "Content-Type: application/json\r\n"},
        {"last line without its end", L"*/*", L"Content-Type: application/json", "x", "1",
         "Content-Type: application/json\r\n"},
        {"several lines", L"application/octet-stream", L"X-First: 1\nX-Second: {\"a\": \"b\"}\n", nullptr, "0",
         "X-First: 1\r\nX-Second: {\"a\": \"b\"}\r\n"},
        {"body in UTF-8", L"*/*", nullptr, "\xE4\xB8\x96", "3", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Service::AddFault(R"({"path": "2/test", "status": 200})");
        Service::ClearRequests();
        const wchar_t* accept_types[] = {row.accept, nullptr};
        m_session.SendRequest(L"2/test", accept_types, row.extra_headers, row.body);

        const auto request = OnlyRequest();
        EXPECT_EQ(request.line, "POST /2/test HTTP/1.1");
        EXPECT_EQ(request.host, DROPBOX_API_HOST);
        EXPECT_EQ(request.Field("Host"), DROPBOX_API_HOST);
        EXPECT_EQ(request.Field("User-Agent"), "Quillan HttpSession");
        EXPECT_EQ(request.Field("Connection"), "Keep-Alive");
        EXPECT_EQ(request.Field("Accept"), ToUtf8(row.accept));
        EXPECT_EQ(request.Field("Content-Length"), row.content_length);
        EXPECT_NE(request.fields.find(AuthorizationField() + row.extra_fields), std::string::npos) << request.fields;
        EXPECT_EQ(request.body, row.body != nullptr ? row.body : "");
    }
}

TEST_F(RequestTest, StartsWithAPlaceholderForTheToken) {
    // The text has no line ending, so the headers that follow run into it: the creator must replace it.
    Service::AddFault(R"({"path": "2/test", "status": 200})");
    auto session = Open(L"" DROPBOX_API_HOST);
    Send(session);
    EXPECT_EQ(OnlyRequest().Field("Authorization"), "Bearer bla-bla");
}

TEST_F(RequestTest, StreamsUploads) {
    constexpr std::size_t piece_size = 4096;
    const std::wstring headers = L"Content-Type: application/octet-stream\n"
                                 L"Dropbox-API-Arg: {\"path\": \"/up.bin\",\"mode\": \"overwrite\"}\n";
    auto session = Open(L"" DROPBOX_CONTENT_HOST);
    session.SetAuthorizationHeader(Service::AuthorizationHeader());
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, piece_size, 100 * piece_size + 1}) {
        SCOPED_TRACE(size);
        Service::ClearRequests();
        const std::string content = RandomBytes(size);
        auto request = session.CreateRequest(headers, size);
        for (std::size_t written = 0; written < size;) {
            const std::uint32_t count = request.Write(&content[written], std::min(piece_size, size - written));
            ASSERT_GT(count, 0u);
            written += count;
        }
        auto response = request.Send();
        EXPECT_NE(ReadAll(response).find("\"name\":\"up.bin\""), std::string::npos);

        const auto record = OnlyRequest();
        EXPECT_EQ(record.line, "POST /2/files/upload HTTP/1.1");
        EXPECT_EQ(record.host, DROPBOX_CONTENT_HOST);
        EXPECT_EQ(record.Field("Accept"), "*/*");
        EXPECT_EQ(record.Field("User-Agent"), "Quillan HttpSession");
        EXPECT_EQ(record.Field("content-length"), std::to_string(size));
        EXPECT_NE(record.fields.find(AuthorizationField() +
                                     "Content-Type: application/octet-stream\r\n"
                                     "Dropbox-API-Arg: {\"path\": \"/up.bin\",\"mode\": \"overwrite\"}\r\n"),
                  std::string::npos)
            << record.fields;
        EXPECT_EQ(record.body_sha256, Sha256(content));
        EXPECT_EQ(ReadBytes(Service::LocalPath(L"/up.bin")), content);
    }
}

TEST_F(RequestTest, ADroppedUploadLeavesTheFile) {
    // The next call must neither complete the dropped upload nor take the reply meant for it.
    WriteBytes(Service::LocalPath(L"/keep.txt"), "as it was");
    auto session = Open(L"" DROPBOX_CONTENT_HOST);
    session.SetAuthorizationHeader(Service::AuthorizationHeader());
    for (const std::size_t missing : {std::size_t{500}, std::size_t{1}}) {
        SCOPED_TRACE(missing);
        constexpr std::size_t size = 1000;
        const std::string content = RandomBytes(size);
        session
            .CreateRequest(L"Content-Type: application/octet-stream\n"
                           L"Dropbox-API-Arg: {\"path\": \"/keep.txt\",\"mode\": \"overwrite\"}\n",
                           size)
            .Write(content.data(), size - missing);
        Service::AddFault(R"({"path": "2/test", "status": 200, "body": "own reply"})");
        auto response = Send(session);
        EXPECT_EQ(ReadAll(response), "own reply");
        EXPECT_EQ(ReadBytes(Service::LocalPath(L"/keep.txt")), "as it was");
    }
}

TEST_F(RequestTest, AnUploadTakesNoPartInTheChallengeLoop) {
    Service::AddFault(
        R"({"path": "2/files/upload", "times": 0, "status": 401, "headers": {"WWW-Authenticate": "OAuth one"}})");
    auto request = m_session.CreateRequest(L"Content-Type: application/octet-stream\n", 1);
    request.Write("x", 1);
    EXPECT_EQ(OutcomeOf([&] { request.Send(); }).status, 401u);
    EXPECT_EQ(OnlyRequest().Field("Authorization").substr(0, 7), "Bearer ");
}

TEST_F(RequestTest, SplitsAddresses) {
    struct {
        const wchar_t* uri;
        const wchar_t* scheme;
        const wchar_t* host;
        unsigned port;
        const wchar_t* path;
    } const rows[] = {
        {L"https://example.com/2/files", L"https", L"example.com", 443, L"/2/files"},
        {L"http://example.com:8080/", L"http", L"example.com", 8080, L"/"},
        {L"HTTPS://Example.com/a?b=c&d=e", L"HTTPS", L"Example.com", 443, L"/a?b=c&d=e"},
        {L"https://example.com/a b", L"https", L"example.com", 443, L"/a%20b"},
        {L"https://example.com/a%20b", L"https", L"example.com", 443, L"/a%20b"},
        {L"https://example.com/a#b", L"https", L"example.com", 443, L"/a#b"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(ToUtf8(row.uri));
        const Http::Uri uri = Http::Session::CrackUri(row.uri);
        EXPECT_EQ(uri.scheme, row.scheme);
        EXPECT_EQ(uri.host, row.host);
        EXPECT_EQ(uri.port, row.port);
        EXPECT_EQ(uri.path, row.path);
    }

    const Outcome ftp = OutcomeOf([] { Http::Session::CrackUri(L"ftp://example.com/a"); });
    EXPECT_EQ(ftp.type, "Exception");
    EXPECT_EQ(ftp.message, L"Internet scheme should be either HTTP or HTTPS");
    EXPECT_TRUE(m_log.Has("Http::Session::CrackUri<-- Expression \"uri_components.nScheme == INTERNET_SCHEME_HTTP || "
                          "uri_components.nScheme == INTERNET_SCHEME_HTTPS\" caused throwing \"Internet scheme should "
                          "be either HTTP or HTTPS\"\n"));
    for (const wchar_t* const wrong : {L"", L"no address"})
        EXPECT_NE(OutcomeOf([&] { Http::Session::CrackUri(wrong); }).type, "") << ToUtf8(wrong);
}

TEST_F(RequestTest, KeepsItsCurrentTokenSecret) {
    const std::wstring words = L"sl.0123456789abcdef and sl.fedcba9876543210";
    {
        auto session = Open(L"" DROPBOX_API_HOST);
        session.SetAuthorizationHeader(L"Authorization:Bearer sl.0123456789abcdef\n");
        EXPECT_EQ(WithoutSecrets(words), L"*** and sl.fedcba9876543210");
        session.SetAuthorizationHeader(L"Authorization:Bearer sl.fedcba9876543210\n");
        EXPECT_EQ(WithoutSecrets(words), L"sl.0123456789abcdef and ***");
    }
    EXPECT_EQ(WithoutSecrets(words), words);
}

} // namespace
