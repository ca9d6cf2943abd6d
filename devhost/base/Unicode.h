#pragma once

#include <string>
#include <string_view>

namespace DevHost {

/// Both conversions take any text: what has no counterpart (a lone surrogate, a wrong byte) becomes U+FFFD.
std::string ToUtf8(std::wstring_view i_text);
std::wstring FromUtf8(std::string_view i_text);

/// The text in one line: line breaks become blanks, and white space around it goes.
std::wstring OneLine(std::wstring_view i_text);

/// Whether two locations or ids are the same to the host: code unit by code unit, case ignored. Linguistic comparison
/// would take different files ("ß" and "ss") for one.
bool EqualIgnoringCase(std::wstring_view i_first, std::wstring_view i_second);

} // namespace DevHost
