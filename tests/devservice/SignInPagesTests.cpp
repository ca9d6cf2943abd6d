#include "LocalService.h"
#include "WebText.h"

using namespace DevService;

namespace {

const std::string Receiver = "https://www.dropbox.com/1/oauth2/redirect_receiver";
const std::string Authorize = "/oauth2/authorize?response_type=token&client_id=app&redirect_uri=" + Receiver;

class SignIn : public LocalService {
protected:
    SignIn() : m_client(Connect(web_host)) {}

    Answer Submit(const std::string& i_target, const std::string& i_form) {
        return m_client.Post(i_target, Cookie() + "Content-Type: application/x-www-form-urlencoded\r\n", i_form);
    }

    /// Keeps the cookie, as a browser does.
    Answer LogIn(const std::string& i_form) {
        Answer answer = Submit(Authorize, i_form);
        const std::string cookie(answer["Set-Cookie"]);
        m_cookie = cookie.substr(0, cookie.find(';'));
        return answer;
    }

    std::string Cookie() const { return m_cookie.empty() ? "" : "Cookie: other=1; " + m_cookie + "\r\n"; }

    /// The value of the consent page's hidden field.
    std::string FormKey(const std::string& i_target = Authorize) {
        const std::string page = m_client.Get(i_target, Cookie()).body();
        const std::string start = "name=\"form_key\" value=\"";
        const std::size_t begin = page.find(start) + start.size();
        return page.substr(begin, page.find('"', begin) - begin);
    }

    ServiceClient m_client;
    std::string m_cookie;
};

TEST_F(SignIn, LeadsFromSigningOutToATokenThatHolds) {
    const Answer logout = m_client.Get("/logout");
    EXPECT_EQ(logout.result_int(), 302u);
    EXPECT_EQ(std::string(logout["Location"]), "https://www.dropbox.com/login");
    EXPECT_EQ(m_client.Get("/login").result_int(), 200u);
    EXPECT_NE(m_client.Get(Authorize).body().find("type=\"password\""), std::string::npos);

    const Answer wrong = LogIn("email=dana.sample%40example.com&password=guess");
    EXPECT_EQ(wrong.result_int(), 200u);
    EXPECT_NE(wrong.body().find("Wrong email or password"), std::string::npos);
    EXPECT_EQ(m_cookie, "");

    const Answer right = LogIn("email=Dana.Sample%40example.com&password=sample");
    EXPECT_EQ(std::string(right["Location"]), "https://www.dropbox.com" + Authorize);
    EXPECT_EQ(std::string(right["Set-Cookie"]).find("omain"), std::string::npos);

    const std::string location(Submit(Authorize, "form_key=" + FormKey() + "&allow=Allow")["Location"]);
    ASSERT_TRUE(location.starts_with(Receiver + "#")) << location;
    FormFields fields = ParseForm(location.substr(Receiver.size() + 1));
    EXPECT_EQ(fields["token_type"], "bearer");
    EXPECT_EQ(fields["expires_in"], "14400");
    EXPECT_NE(location.find("&account_id=dbid%3A"), std::string::npos);
    const Answer account = Connect(api_host).Post("/2/users/get_current_account",
                                                  "Authorization:Bearer " + fields["access_token"] + "\r\n", "");
    EXPECT_EQ(Member(Json(account), "account_id"), fields["account_id"]);
    EXPECT_EQ(m_client.Get("/1/oauth2/redirect_receiver").result_int(), 200u);

    // Signed out, the browser is asked again.
    m_client.Get("/logout", Cookie());
    EXPECT_NE(m_client.Get(Authorize, Cookie()).body().find("type=\"password\""), std::string::npos);
}

TEST_F(SignIn, TellsTheApplicationOfARefusal) {
    LogIn("email=robin.second.co%40example.com&password=%22quoted%22");
    const std::string target = Authorize + "&state=a%26b%3Cc";
    const std::string location(Submit(target, "form_key=" + FormKey(target) + "&cancel=Cancel")["Location"]);
    EXPECT_EQ(location, Receiver + "#state=a%26b%3Cc&error_description=The+user+chose+not+to+give+your+app+access+to+"
                                   "their+Dropbox+account.&error=access_denied");
}

TEST_F(SignIn, WritesNothingUnescapedAndTrustsNoForgery) {
    const std::string odd = Authorize + "&state=%22%3E%3Cscript%3E";
    const Answer page = Submit(odd, "email=%22%3E%3Cscript%3E&password=x");
    EXPECT_EQ(page.body().find("<script"), std::string::npos);
    LogIn("email=Robin+%3CSecond%3E+%26+Co&password=%22quoted%22");
    const std::string consent = m_client.Get(Authorize, Cookie()).body();
    EXPECT_NE(consent.find("Robin &lt;second&gt; &amp; Co"), std::string::npos) << consent;
    EXPECT_EQ(Submit(Authorize, "form_key=guess&allow=Allow").count("Location"), 0u);
}

TEST_F(SignIn, RefusesRequestsThatAreNotItsOwn) {
    const std::string targets[] = {
        "/oauth2/authorize?response_type=code&client_id=app&redirect_uri=" + Receiver,
        "/oauth2/authorize?response_type=token&redirect_uri=" + Receiver,
        "/oauth2/authorize?response_type=token&client_id=app&redirect_uri=https://example.com/",
        "/oauth2/authorize",
        Authorize + "&state=" + std::string(501, 's'),
    };
    for (const std::string& target : targets)
        EXPECT_EQ(m_client.Get(target).result_int(), 400u) << target;
    EXPECT_EQ(m_client.Get("/nope").result_int(), 404u);
}

} // namespace
