#include "Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <locale>
#include <optional>
#include <stdexcept>
#include <vector>

#include <openssl/rand.h>

namespace DevService {

namespace {

/// Decodes the character at `io_position` and steps over it; empty for malformed UTF-8.
std::optional<char32_t> NextCharacter(std::string_view i_text, std::size_t& io_position) {
    const auto byte_at = [&](std::size_t i_index) { return static_cast<unsigned char>(i_text[i_index]); };
    const unsigned char lead = byte_at(io_position);
    if (lead < 0x80) {
        ++io_position;
        return lead;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || i_text.size() - io_position < length)
        return std::nullopt;
    char32_t character = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char next = byte_at(io_position + i);
        if ((next & 0xC0) != 0x80)
            return std::nullopt;
        character = (character << 6) | (next & 0x3Fu);
    }
    static constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    if (character < Smallest[length] || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF))
        return std::nullopt;
    io_position += length;
    return character;
}

void AppendUtf8(std::string& io_text, char32_t i_character) {
    const auto append = [&](char32_t i_byte) { io_text += static_cast<char>(i_byte); };
    if (i_character < 0x80) {
        append(i_character);
    } else if (i_character < 0x800) {
        append(0xC0 | (i_character >> 6));
        append(0x80 | (i_character & 0x3F));
    } else if (i_character < 0x10000) {
        append(0xE0 | (i_character >> 12));
        append(0x80 | ((i_character >> 6) & 0x3F));
        append(0x80 | (i_character & 0x3F));
    } else {
        append(0xF0 | (i_character >> 18));
        append(0x80 | ((i_character >> 12) & 0x3F));
        append(0x80 | ((i_character >> 6) & 0x3F));
        append(0x80 | (i_character & 0x3F));
    }
}

/// The Unicode character types, which every current C library has under this name; else those of ASCII alone.
const std::locale& UnicodeLocale() {
    static const std::locale locale = [] {
        try {
            return std::locale("C.UTF-8");
        } catch (const std::runtime_error&) {
            return std::locale::classic();
        }
    }();
    return locale;
}

} // namespace

bool IsUtf8(std::string_view i_text) {
    for (std::size_t position = 0; position < i_text.size();)
        if (!NextCharacter(i_text, position))
            return false;
    return true;
}

std::string FromBytes(std::string_view i_bytes) {
    std::string text;
    text.reserve(i_bytes.size());
    for (const char byte : i_bytes)
        AppendUtf8(text, static_cast<unsigned char>(byte));
    return text;
}

std::string ToLower(std::string_view i_text) {
    std::string lower;
    lower.reserve(i_text.size());
    const auto& types = std::use_facet<std::ctype<wchar_t>>(UnicodeLocale());
    for (std::size_t position = 0; position < i_text.size();) {
        const char byte = i_text[position];
        if (static_cast<unsigned char>(byte) < 0x80) {
            lower += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
            ++position;
        } else if (const auto character = NextCharacter(i_text, position)) {
            AppendUtf8(lower, static_cast<char32_t>(types.tolower(static_cast<wchar_t>(*character))));
        } else {
            lower += i_text[position++];
        }
    }
    return lower;
}

std::size_t Utf16Length(std::string_view i_text) {
    std::size_t length = 0;
    for (const char byte : i_text) {
        const auto value = static_cast<unsigned char>(byte);
        length += (value & 0xC0) != 0x80;
        length += value >= 0xF0;
    }
    return length;
}

std::string Base64Url(std::span<const unsigned char> i_bytes) {
    static constexpr std::string_view Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string text;
    std::uint32_t bits = 0;
    int bit_count = 0;
    for (const unsigned char byte : i_bytes) {
        bits = (bits << 8) | byte;
        for (bit_count += 8; bit_count >= 6; bit_count -= 6)
            text += Digits[(bits >> (bit_count - 6)) & 0x3F];
    }
    if (bit_count > 0)
        text += Digits[(bits << (6 - bit_count)) & 0x3F];
    return text;
}

std::string Hex(std::span<const unsigned char> i_bytes) {
    static constexpr std::string_view Digits = "0123456789abcdef";
    std::string text;
    text.reserve(i_bytes.size() * 2);
    for (const unsigned char byte : i_bytes) {
        text += Digits[byte >> 4];
        text += Digits[byte & 0xF];
    }
    return text;
}

std::string RandomText(std::size_t i_byte_count) {
    std::vector<unsigned char> bytes(i_byte_count);
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
        throw std::runtime_error("the system gives no random numbers");
    return Base64Url(bytes);
}

} // namespace DevService
