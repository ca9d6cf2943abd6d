#include "auth/SignInNavigation.h"
#include "support/Log.h"
#include "support/Outcome.h"

namespace {

constexpr wchar_t authorize_page[] =
    L"https://www.dropbox.com/oauth2/authorize?response_type=token&client_id=app-key&redirect_uri="
    L"https://www.dropbox.com/1/oauth2/redirect_receiver";

/// A sign-in without a window: it records what the handler does to the dialog.
struct SignIn {
    std::wstring navigated_to;
    int navigations = 0;
    int closings = 0;
    HRESULT answer = S_OK; ///< Returned by the dialog's operations.
    std::wstring header;
    std::wstring account_id;
    SignInNavigation navigation{[this](const std::wstring& i_url) {
                                    navigated_to = i_url;
                                    ++navigations;
                                    return answer;
                                },
                                [this] {
                                    ++closings;
                                    return answer;
                                },
                                L"app-key", header, account_id};
};

struct Page {
    const char* name;
    const wchar_t* url;
    bool leads_to_authorize = false;
};

TEST(SignInNavigation, LeadsFromTheEndOfTheLogOutToTheAuthorizePage) {
    const Page pages[] = {
        {"log-in page", L"https://www.dropbox.com/login", true},
        {"log-in page with a query", L"https://www.dropbox.com/login?cont=%2Foauth2#top", true},
        {"longer word", L"https://www.dropbox.com/login_help", true},
        {"upper-case letters", L"HTTPS://WWW.Dropbox.COM/LogIn", true},
        {"home page", L"https://www.dropbox.com/", true},
        {"home page, upper-case", L"https://WWW.DROPBOX.COM/", true},
        {"home page with a query", L"https://www.dropbox.com/?landing=1"},
        {"another page of the site", L"https://www.dropbox.com/home"},
        {"start page", L"https://www.dropbox.com/logout"},
        {"cut before its end", L"https://www.dropbox.com/logi"},
        {"no slash", L"https://www.dropbox.com"},
        {"other host", L"https://www.dropbox.com.example.org/login"},
        {"no TLS", L"http://www.dropbox.com/login"},
        {"log-in page as an argument", L"https://example.org/?u=https://www.dropbox.com/login"},
        {"authorize page", authorize_page},
        {"empty", L""},
        {"blank page", L"about:blank"},
        {"receiver, cut before its end",
         L"https://www.dropbox.com/1/oauth2/redirect_receive#access_token=a&account_id=b"},
        {"receiver, other host", L"https://example.org/1/oauth2/redirect_receiver#access_token=abc&account_id=def"},
    };
    for (const Page& page : pages) {
        SCOPED_TRACE(page.name);
        SignIn sign_in;
        EXPECT_HRESULT(S_OK, sign_in.navigation.OnNavigateComplete(page.url));
        EXPECT_EQ(page.leads_to_authorize ? 1 : 0, sign_in.navigations);
        EXPECT_EQ(page.leads_to_authorize ? authorize_page : L"", sign_in.navigated_to);
        EXPECT_EQ(0, sign_in.closings);
        EXPECT_EQ(L"", sign_in.header + sign_in.account_id);
    }
}

TEST(SignInNavigation, EndsACircleOfPages) {
    SignIn sign_in;
    const auto visit = [&](const wchar_t* i_url) { return sign_in.navigation.OnNavigateComplete(i_url); };
    for (int page = 1; page <= 20; ++page) {
        EXPECT_HRESULT(S_OK, visit(L"https://www.dropbox.com/login")) << page;
        EXPECT_HRESULT(S_OK, visit(authorize_page)) << "shown for a moment, it leads to the log-in page again";
    }
    EXPECT_HRESULT(E_FAIL, visit(L"https://www.dropbox.com/login"));
    EXPECT_EQ(20, sign_in.navigations);
    EXPECT_HRESULT(S_OK, visit(L"https://www.dropbox.com/verify")) << "a person goes on";
    EXPECT_HRESULT(S_OK, visit(L"https://www.dropbox.com/login"));
    EXPECT_EQ(21, sign_in.navigations);
}

struct Redirect {
    const char* name;
    const wchar_t* rest; ///< After the receiver's URL.
    const wchar_t* token;
    const wchar_t* account_id;
};

TEST(SignInNavigation, TakesTokenAndAccountFromTheRedirect) {
    const Redirect redirects[] = {
        {"as the service sends it", L"#access_token=abc&token_type=bearer&account_id=dbid%3AXYZ", L"abc",
         L"dbid%3AXYZ"},
        {"account first", L"#account_id=dbid%3AXYZ&access_token=abc", L"abc", L"dbid%3AXYZ"},
        {"nothing is decoded", L"#access_token=a%26b+c&account_id=%E4%B8%96", L"a%26b+c", L"%E4%B8%96"},
        {"case of the values is kept", L"#access_token=aBC&account_id=DBid", L"aBC", L"DBid"},
        {"first of repeated keys", L"#access_token=a1&access_token=a2&account_id=b1&account_id=b2", L"a1", L"b1"},
        {"key inside another word", L"#x_access_token=a1&access_token=a2&account_id=b", L"a1", L"b"},
        {"equals sign in a value", L"#access_token=a==&account_id=b=c", L"a==", L"b=c"},
        {"in the query", L"?access_token=abc&account_id=def", L"abc", L"def"},
        {"longer path", L"/more#access_token=abc&account_id=def", L"abc", L"def"},
    };
    for (const std::wstring receiver :
         {L"https://www.dropbox.com/1/oauth2/redirect_receiver", L"HTTPS://www.DROPBOX.com/1/OAuth2/Redirect_Receiver"})
        for (const Redirect& redirect : redirects) {
            SCOPED_TRACE(redirect.name);
            SignIn sign_in;
            EXPECT_HRESULT(S_OK, sign_in.navigation.OnNavigateComplete((receiver + redirect.rest).c_str()));
            EXPECT_EQ(std::wstring(L"Authorization:Bearer ") + redirect.token, sign_in.header);
            EXPECT_EQ(redirect.account_id, sign_in.account_id);
            EXPECT_EQ(1, sign_in.closings);
            EXPECT_EQ(0, sign_in.navigations);
        }
}

struct BadRedirect {
    const char* name;
    const wchar_t* rest;
    const char* expression;
};

TEST(SignInNavigation, LeavesTheDialogOpenWhenTheRedirectLacksSomething) {
    const BadRedirect redirects[] = {
        {"nothing", L"", "!token.empty()"},
        {"refused", L"#error=access_denied&error_description=The+user+chose+not+to+allow", "!token.empty()"},
        {"no token", L"#account_id=dbid", "!token.empty()"},
        {"token at the very end", L"#account_id=dbid&access_token=", "!token.empty()"},
        {"empty token", L"#access_token=&account_id=dbid", "!token.empty()"},
        {"empty token before another", L"#access_token=&access_token=abc&account_id=dbid", "!token.empty()"},
        {"keys in upper case", L"#ACCESS_TOKEN=abc&ACCOUNT_ID=dbid", "!token.empty()"},
        {"no account", L"#access_token=abc", "!account_id.empty()"},
        {"account at the very end", L"#access_token=abc&account_id=", "!account_id.empty()"},
        {"empty account", L"#access_token=abc&account_id=&uid=1", "!account_id.empty()"},
    };
    const std::wstring receiver = L"https://www.dropbox.com/1/oauth2/redirect_receiver";
    for (const BadRedirect& redirect : redirects) {
        SCOPED_TRACE(redirect.name);
        SignIn sign_in;
        const Tests::LogCapture log;
        EXPECT_HRESULT(E_FAIL, sign_in.navigation.OnNavigateComplete((receiver + redirect.rest).c_str()));
        EXPECT_TRUE(log.Has("Expression: \"" + std::string(redirect.expression) + "\" caused returning"));
        EXPECT_FALSE(log.Has("SignInNavigation::OnNavigateComplete<-- \n")) << "no result";
        EXPECT_EQ(0, sign_in.closings + sign_in.navigations);
        EXPECT_EQ(L"", sign_in.header + sign_in.account_id);
    }
}

TEST(SignInNavigation, RefusesANullUrl) {
    SignIn sign_in;
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_FAIL, sign_in.navigation.OnNavigateComplete(nullptr));
    EXPECT_TRUE(log.Has("Expression: \"i_url != nullptr\" caused returning"));
    EXPECT_EQ(0, sign_in.closings + sign_in.navigations);
}

TEST(SignInNavigation, TakesAFragmentOfAnyLength) {
    SignIn sign_in;
    const std::wstring token(100 * 1024, L't');
    const std::wstring url =
        L"https://www.dropbox.com/1/oauth2/redirect_receiver#access_token=" + token + L"&account_id=dbid";
    EXPECT_HRESULT(S_OK, sign_in.navigation.OnNavigateComplete(url.c_str()));
    EXPECT_EQ(L"Authorization:Bearer " + token, sign_in.header);
}

TEST(SignInNavigation, AnswersEveryReturnToTheLogInPageAnew) {
    SignIn sign_in;
    for (int visit = 1; visit <= 3; ++visit) {
        EXPECT_HRESULT(S_OK, sign_in.navigation.OnNavigateComplete(L"https://www.dropbox.com/login?failed=1"));
        EXPECT_EQ(visit, sign_in.navigations);
    }
}

TEST(SignInNavigation, PassesTheDialogsFailuresOn) {
    SignIn sign_in;
    sign_in.answer = E_ACCESSDENIED;
    EXPECT_HRESULT(E_ACCESSDENIED, sign_in.navigation.OnNavigateComplete(L"https://www.dropbox.com/"));
    EXPECT_HRESULT(E_ACCESSDENIED,
                   sign_in.navigation.OnNavigateComplete(
                       L"https://www.dropbox.com/1/oauth2/redirect_receiver#access_token=abc&account_id=def"));
}

TEST(SignInNavigation, KeepsTheTokenOutOfTheLog) {
    const Tests::LogCapture log;
    for (const wchar_t* rest : {L"#access_token=SECRET-1&account_id=def", L"#access_token=SECRET-1", L"#xSECRET-1"}) {
        SignIn sign_in;
        sign_in.answer = E_ACCESSDENIED;
        const std::wstring receiver = L"https://www.dropbox.com/1/oauth2/redirect_receiver";
        EXPECT_TRUE(FAILED(sign_in.navigation.OnNavigateComplete((receiver + rest).c_str())));
    }
    EXPECT_TRUE(log.Has("SignInNavigation::OnNavigateComplete-->"));
    EXPECT_FALSE(log.Has("SECRET"));
    EXPECT_FALSE(log.Has("redirect_receiver"));
}

} // namespace
