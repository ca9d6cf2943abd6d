#include "Encoding.h"

#include <openssl/rand.h>
#include <utf8proc.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <vector>

namespace DevService {
namespace {

bool IsAscii(char i_byte) {
    return static_cast<unsigned char>(i_byte) < 0x80;
}

const utf8proc_uint8_t* Bytes(std::string_view i_text) {
    return reinterpret_cast<const utf8proc_uint8_t*>(i_text.data());
}

/// Decodes the character at the beginning. @returns its size in bytes; 0 for malformed UTF-8
std::size_t FirstCharacter(std::string_view i_text, utf8proc_int32_t& o_character) {
    const utf8proc_ssize_t size =
        utf8proc_iterate(Bytes(i_text), static_cast<utf8proc_ssize_t>(i_text.size()), &o_character);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

void AppendUtf8(std::string& io_text, utf8proc_int32_t i_character) {
    utf8proc_uint8_t bytes[4];
    const utf8proc_ssize_t size = utf8proc_encode_char(i_character, bytes);
    io_text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

} // namespace

bool IsUtf8(std::string_view i_text) {
    while (!i_text.empty()) {
        utf8proc_int32_t character = 0;
        const std::size_t size = IsAscii(i_text.front()) ? 1 : FirstCharacter(i_text, character);
        if (size == 0)
            return false;
        i_text.remove_prefix(size);
    }
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
    while (!i_text.empty()) {
        const char byte = i_text.front();
        utf8proc_int32_t character = 0;
        const std::size_t size = IsAscii(byte) ? 0 : FirstCharacter(i_text, character);
        if (size > 0)
            AppendUtf8(lower, utf8proc_tolower(character));
        else
            lower += byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
        i_text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return lower;
}

std::string Composed(std::string_view i_text) {
    if (std::ranges::all_of(i_text, IsAscii))
        return std::string(i_text);
    constexpr auto form = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
    utf8proc_uint8_t* composed = nullptr;
    const utf8proc_ssize_t size =
        utf8proc_map(Bytes(i_text), static_cast<utf8proc_ssize_t>(i_text.size()), &composed, form);
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(composed, &std::free);
    if (size < 0)
        throw std::runtime_error(utf8proc_errmsg(size));
    return {reinterpret_cast<const char*>(composed), static_cast<std::size_t>(size)};
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
    static constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string text;
    std::uint32_t bits = 0;
    int bit_count = 0;
    for (const unsigned char byte : i_bytes) {
        bits = (bits << 8) | byte;
        for (bit_count += 8; bit_count >= 6; bit_count -= 6)
            text += digits[(bits >> (bit_count - 6)) & 0x3F];
    }
    if (bit_count > 0)
        text += digits[(bits << (6 - bit_count)) & 0x3F];
    return text;
}

std::string Hex(std::span<const unsigned char> i_bytes) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(i_bytes.size() * 2);
    for (const unsigned char byte : i_bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
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
