// The addresses that a browser passes through, and the tokens in them.

#include "fuzz/FuzzInput.h"

#include "auth/AccessToken.h"
#include "auth/ServicePage.h"
#include "auth/SignInNavigation.h"
#include "core/trace/Text.h"

namespace Fuzz {
namespace {

const Language addresses = {
    {"https://" DROPBOX_WEB_HOST
     "/1/oauth2/redirect_receiver#uid=1&access_token=sl.abc-DEF_1&expires_in=14400&token_type=bearer&"
     "account_id=dbid%3AAAH4",
     "https://" DROPBOX_WEB_HOST "/login", "https://" DROPBOX_WEB_HOST "/", "https://" DROPBOX_WEB_HOST "/home",
     "https://" DROPBOX_WEB_HOST "/1/oauth2/redirect_receiver#error=access_denied", "about:blank"},
    {"access_token=", "account_id=", "&", "#", "?", "=", "https://", "/login", "/1/oauth2/redirect_receiver", "%3A",
     "%", "\n", " ", ".evil.example", "@"}};

TEST(SignInFuzz, ATokenComesFromTheRedirectAloneAndWithItsAccount) {
    std::uint64_t signed_in = 0;
    ForTexts(addresses, [&](Random&, const std::wstring& i_input) {
        std::wstring header, account, next;
        bool is_closed = false;
        SignInNavigation navigation(
            [&](const std::wstring& i_url) {
                next = i_url;
                return S_OK;
            },
            [&] {
                is_closed = true;
                return S_OK;
            },
            L"client", header, account);
        const HRESULT result = navigation.OnNavigateComplete(i_input.c_str());
        EXPECT_EQ(header.empty(), account.empty());
        EXPECT_EQ(is_closed, !header.empty());
        EXPECT_TRUE(next.empty() || next.starts_with(ServicePage(L"/oauth2/authorize")));
        if (header.empty())
            return;
        ++signed_in;
        EXPECT_EQ(result, S_OK);
        EXPECT_TRUE(EqualsNoCase(std::wstring_view(i_input).substr(0, ServicePage(L"/").size()), ServicePage(L"/")));
        EXPECT_NE(i_input.find(BareToken(header), i_input.find(L"access_token=")),
                  i_input.npos); // A blank may stand between.
    });
    EXPECT_GT(signed_in, InputCount() / 50);
}

const Language tokens = {
    {"Authorization:Bearer sl.abc", "sl.abc", "Bearer sl.abc", " \tsl.abc\r\n", "authorization:bearer x"},
    {" ", "\n", "Bearer ", "Authorization:", "sl.", "\xC3\xA9"}};

TEST(SignInFuzz, ATokenIsBareOfWhatStandsAround) {
    ForTexts(tokens, [](Random&, const std::wstring& i_input) {
        const std::wstring token = BareToken(i_input);
        EXPECT_NE(i_input.find(token), i_input.npos);
        if (!token.empty()) {
            EXPECT_EQ(std::wstring_view(L" \t\r\n").find(token.front()), std::wstring_view::npos);
            EXPECT_EQ(std::wstring_view(L" \t\r\n").find(token.back()), std::wstring_view::npos);
        }
        if (!EqualsNoCase(token.substr(0, 7), L"Bearer ") && !EqualsNoCase(token.substr(0, 14), L"Authorization:")) {
            EXPECT_EQ(BareToken(AuthorizationHeader(token)), token);
        }
    });
}

} // namespace
} // namespace Fuzz
