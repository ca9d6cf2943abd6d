#pragma once

#include <string>
#include <string_view>

namespace DevHost {

/// Both conversions accept any text: anything without a counterpart (a lone surrogate, an invalid byte) becomes U+FFFD.
std::string ToUtf8(std::wstring_view i_text);
std::wstring FromUtf8(std::string_view i_text);

/// The text on one line: line breaks become spaces, and surrounding white space is removed.
std::wstring OneLine(std::wstring_view i_text);

/// Whether two locations or ids are the same to the host: compared by code unit, ignoring case. Linguistic comparison
/// would treat different files ("ß" and "ss") as one.
bool EqualIgnoringCase(std::wstring_view i_first, std::wstring_view i_second);

} // namespace DevHost
