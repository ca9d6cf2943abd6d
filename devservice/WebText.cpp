#include "WebText.h"

#include <algorithm>
#include <charconv>

namespace DevService {
namespace {

std::string UnescapeUrl(std::string_view i_text) {
    std::string text;
    for (std::size_t i = 0; i < i_text.size(); ++i) {
        unsigned char byte = 0;
        const char* const digits = i_text.data() + i + 1;
        const bool is_escape = i_text[i] == '%' && i + 2 < i_text.size() &&
                               std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        if (is_escape) {
            text += static_cast<char>(byte);
            i += 2;
        } else {
            text += i_text[i] == '+' ? ' ' : i_text[i];
        }
    }
    return text;
}

} // namespace

std::string EscapeHtml(std::string_view i_text) {
    std::string html;
    for (const char character : i_text) {
        switch (character) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        case '\'':
            html += "&#39;";
            break;
        default:
            html += character;
        }
    }
    return html;
}

std::string EscapeUrl(std::string_view i_text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string text;
    for (const char character : i_text) {
        const auto byte = static_cast<unsigned char>(character);
        if (plain.find(character) != plain.npos) {
            text += character;
        } else {
            text += '%';
            text += digits[byte >> 4];
            text += digits[byte & 0xF];
        }
    }
    return text;
}

FormFields ParseForm(std::string_view i_text) {
    FormFields fields;
    while (!i_text.empty()) {
        const std::string_view field = i_text.substr(0, i_text.find('&'));
        const std::size_t equals = std::min(field.find('='), field.size());
        const std::string_view value = field.substr(std::min(equals + 1, field.size()));
        fields.emplace(UnescapeUrl(field.substr(0, equals)), UnescapeUrl(value));
        i_text.remove_prefix(std::min(field.size() + 1, i_text.size()));
    }
    return fields;
}

} // namespace DevService
