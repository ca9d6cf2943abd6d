#pragma once

#include <string>
#include <string_view>

/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string ToUtf8(std::wstring_view i_text);

/// UTF-8 to UTF-16; bytes that are not UTF-8 become U+FFFD.
std::wstring FromUtf8(std::string_view i_bytes);

/// Compares a whole text with the first `i_length` characters of another (all of it if it is shorter), in the invariant
/// locale, ignoring case: 0 if they are equal, otherwise negative or positive.
int StringCompare(std::wstring_view i_text, std::wstring_view i_other, int i_length) noexcept;

/// Whether two texts are equal in the invariant locale, ignoring case.
bool EqualsNoCase(std::wstring_view i_text, std::wstring_view i_other) noexcept;

/// Whether two texts are equal letter by letter but for case, as the service compares names. The comparisons above also
/// take "strasse" for "straße" and ignore characters without width: such a likeness must never be taken for the item
/// that the user means.
bool IsSameName(std::wstring_view i_text, std::wstring_view i_other) noexcept;
