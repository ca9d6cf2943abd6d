// Answers to 401 and 407.

#include "http/HttpTest.h"

using namespace Tests;

namespace {

class ChallengeTest : public HttpTest {
protected:
    /// `i_headers` is a JSON list of [name, value] pairs; 0 times means always.
    static void Challenge(unsigned i_status, const std::string& i_headers, int i_times = 1) {
        Service::AddFault(R"({"path": "2/test", "status": )" + std::to_string(i_status) + R"(, "times": )" +
                          std::to_string(i_times) + R"(, "body": "refused", "headers": [)" + i_headers + "]}");
    }

    static void Accept() { Service::AddFault(R"({"path": "2/test", "status": 200, "times": 0})"); }

    /// The authorization of each request that arrived, with "Bearer" for the token's.
    static std::vector<std::string> Authorizations() {
        std::vector<std::string> values;
        for (const auto& request : Service::Requests()) {
            const std::string value = request.Field("Authorization");
            values.push_back(value.starts_with("Bearer ") ? "Bearer" : value);
        }
        return values;
    }

    static std::size_t Count(const std::string& i_text, const std::string& i_part) {
        std::size_t count = 0;
        for (std::size_t at = 0; (at = i_text.find(i_part, at)) != std::string::npos; ++at)
            ++count;
        return count;
    }
};

using Values = std::vector<std::string>;

TEST_F(ChallengeTest, TakesTheServicesAuthorizationAndKeepsIt) {
    Challenge(401, R"(["WWW-Authenticate", "Basic realm=\"a\""], ["WWW-Authenticate", "OAuth one=\"1\", two"])");
    Accept();
    Send(nullptr);
    Send("{}");
    EXPECT_EQ(Authorizations(), (Values{"Bearer", "OAuth one=\"1\", two", "OAuth one=\"1\", two"}));
    EXPECT_EQ(Service::Requests()[0].fields.find("OAuth"), std::string::npos);
}

TEST_F(ChallengeTest, SendsTheBodyAgain) {
    Challenge(401, R"(["WWW-Authenticate", "OAuth one"])");
    Accept();
    Send("{\"a\": 1}");
    const auto requests = Service::Requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[1].body, "{\"a\": 1}");
}

TEST_F(ChallengeTest, EndsALoop) {
    struct {
        const char* name;
        Values challenges; // The last one is repeated for ever.
        Values authorizations;
    } const rows[] = {
        {"the same again", {"OAuth a"}, {"Bearer", "OAuth a"}},
        {"in turn", {"OAuth a", "OAuth b", "OAuth a"}, {"Bearer", "OAuth a", "OAuth b"}},
        {"always another",
         {"OAuth a", "OAuth b", "OAuth c", "OAuth d", "OAuth e", "OAuth f"},
         {"Bearer", "OAuth a", "OAuth b", "OAuth c", "OAuth d"}},
        {"another kind", {"Bearer realm=api"}, {"Bearer"}},
        {"another case", {"oauth a"}, {"Bearer"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Service::ClearFaults();
        Service::ClearRequests();
        m_session.SetAuthorizationHeader(Service::AuthorizationHeader());
        for (const std::string& challenge : row.challenges)
            Challenge(401, R"(["WWW-Authenticate", ")" + challenge + R"("])",
                      &challenge == &row.challenges.back() ? 0 : 1);
        const Outcome outcome = OutcomeOf([&] { Send(); });
        EXPECT_EQ(outcome.type, "HttpException");
        EXPECT_EQ(outcome.status, 401u);
        EXPECT_EQ(Authorizations(), row.authorizations);
    }
    EXPECT_FALSE(m_log.Has("OAuth a")) << "what the service wants to see is as secret as a token";
}

TEST_F(ChallengeTest, RefusesAnEmptyAuthorization) {
    Challenge(401, R"(["WWW-Authenticate", "OAuth "])");
    const Outcome outcome = OutcomeOf([&] { Send(); });
    EXPECT_EQ(outcome.type, "HttpException");
    EXPECT_EQ(outcome.status, 401u);
    EXPECT_TRUE(m_log.Has("Expression \"!authentication_header.empty()\" caused throwing \"HTTP 401: Unauthorized\""));
    EXPECT_EQ(Authorizations(), Values{"Bearer"});
}

TEST_F(ChallengeTest, ThrowsWithoutChallengeOrCredentials) {
    const Http::Credentials none, no_password{L"ada", L""}, no_name{L"", L"secret"};
    for (const unsigned status : {401u, 407u}) {
        for (const auto& credentials : {none, no_password, no_name}) {
            SCOPED_TRACE(status);
            Service::ClearRequests();
            Challenge(status, "");
            auto session = Open(L"" DROPBOX_API_HOST, credentials, credentials);
            session.SetAuthorizationHeader(Service::AuthorizationHeader());
            EXPECT_EQ(OutcomeOf([&] { Send(session); }).status, status);
            EXPECT_EQ(Authorizations(), Values{"Bearer"});
        }
    }
}

TEST_F(ChallengeTest, GivesCredentialsToNobodyElse) {
    struct {
        const char* name;
        unsigned status;
        Http::Credentials server, proxy;
    } const rows[] = {{"the server's to the proxy", 407, {L"ada", L"secret"}, {}},
                      {"the proxy's to the server", 401, {}, {L"proxy", L"hidden"}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Challenge(row.status,
                  R"(["WWW-Authenticate", "Basic realm=\"x\""], ["Proxy-Authenticate", "Basic realm=\"x\""])", 0);
        auto session = Open(L"" DROPBOX_API_HOST, row.server, row.proxy);
        session.SetAuthorizationHeader(Service::AuthorizationHeader());
        const LogCapture log;
        EXPECT_EQ(OutcomeOf([&] { Send(session); }).status, row.status);
        EXPECT_EQ(Count(log.Messages(), "`anonymous-namespace'::SendRequest-->"), 1u);
        Service::ClearFaults();
    }

    // A redirect leads to another host, for which there are no credentials.
    Service::AddFault(R"({"path": "2/test", "status": 302, "headers": {"Location": "https://)" DROPBOX_CONTENT_HOST
                      R"(/2/elsewhere"}})");
    Service::AddFault(R"({"path": "2/elsewhere", "status": 401, "times": 0,
                          "headers": {"WWW-Authenticate": "Basic realm=\"x\""}})");
    auto session = Open(L"" DROPBOX_API_HOST, {L"ada", L"secret"}, {});
    session.SetAuthorizationHeader(Service::AuthorizationHeader());
    const LogCapture log;
    EXPECT_EQ(OutcomeOf([&] { Send(session); }).status, 401u);
    EXPECT_EQ(Count(log.Messages(), "`anonymous-namespace'::SendRequest-->"), 1u);
    EXPECT_EQ(Service::Requests().back().host, DROPBOX_CONTENT_HOST) << "the bed of this test";
}

TEST_F(ChallengeTest, AnswersOnceWithCredentials) {
    // WinINet keeps credentials for each host: no other test uses this one.
    auto session = Open(L"" DROPBOX_WEB_HOST, {L"ada", L"secret"}, {L"proxy", L"hidden"});
    session.SetAuthorizationHeader(Service::AuthorizationHeader());

    // WinINet repeats its own second try unchanged, and puts the credentials into the next one.
    Challenge(401, R"(["WWW-Authenticate", "Basic realm=\"answers\""])", 2);
    Accept();
    Send(session, "{}");
    EXPECT_EQ(Authorizations(), (Values{"Bearer", "Bearer", "Basic YWRhOnNlY3JldA=="}));
    EXPECT_EQ(Service::Requests().back().body, "{}");

    struct {
        unsigned status;
        const char* header;
    } const rows[] = {{401, "WWW-Authenticate"}, {407, "Proxy-Authenticate"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        Service::ClearFaults();
        Challenge(row.status, std::string("[\"") + row.header + R"(", "Basic realm=\"again\""])", 0);
        const LogCapture log;
        EXPECT_EQ(OutcomeOf([&] { Send(session); }).status, row.status);
        EXPECT_EQ(Count(log.Messages(), "`anonymous-namespace'::SendRequest-->"), 2u);
    }
    EXPECT_FALSE(m_log.Has("secret") || m_log.Has("hidden")) << "a password came into the log";
}

} // namespace
