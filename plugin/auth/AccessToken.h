#pragma once

#include <string>
#include <string_view>

/// The token itself, without the words of a header line before it: a stored one may still have them, with spaces around
/// each.
std::wstring BareToken(std::wstring_view i_token);

/// "Authorization:Bearer " and the token, with the line ending.
std::wstring AuthorizationHeader(const std::wstring& i_token);
