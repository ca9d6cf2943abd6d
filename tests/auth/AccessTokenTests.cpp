#include "auth/AccessToken.h"

#include <gtest/gtest.h>

namespace {

TEST(AccessTokenTest, LosesItsHeaderAndItsTypeAndNothingElse) {
    for (const wchar_t* const text : {L"sl.token", L" sl.token\r\n", L"Bearer sl.token", L"bearer\t sl.token",
                                      L"Authorization:Bearer sl.token\n", L" authorization: Bearer  sl.token "})
        EXPECT_EQ(BareToken(text), L"sl.token") << text;
    for (const wchar_t* const text : {L"", L" ", L"Bearer", L"Authorization:", L"Authorization: Bearer "})
        EXPECT_EQ(BareToken(text), L"") << text;
    EXPECT_EQ(BareToken(L"BearerOfToken"), L"BearerOfToken") << "a token that begins like the type";
    EXPECT_EQ(AuthorizationHeader(L"sl.token"), L"Authorization:Bearer sl.token\n");
}

} // namespace
