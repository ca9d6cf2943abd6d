#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace DevService {

/// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool IsUtf8(std::string_view i_text);

/// UTF-8 with each byte of the input as the character U+0000..U+00FF of that value.
std::string FromBytes(std::string_view i_bytes);

/// UTF-8 text in lower case, character by character, as the service compares names.
std::string ToLower(std::string_view i_text);

/// The text in Unicode's composed form (NFC), the only one that the service stores.
/// @param i_text well-formed UTF-8
std::string Composed(std::string_view i_text);

/// Number of UTF-16 units of UTF-8 text: what the service's limits on names count.
std::size_t Utf16Length(std::string_view i_text);

/// URL-safe Base64 without padding.
std::string Base64Url(std::span<const unsigned char> i_bytes);

/// Lower-case hexadecimal digits.
std::string Hex(std::span<const unsigned char> i_bytes);

/// URL-safe text of `i_byte_count` bytes from the system's random source.
std::string RandomText(std::size_t i_byte_count);

} // namespace DevService
