#include "browser/HtmlEntities.h"

#include <algorithm>
#include <cstdint>

namespace DevHost {
namespace {

struct NamedEntity {
    std::wstring_view name;
    wchar_t character;
};

// Those that plain pages use; the others are rare and are left as written.
constexpr NamedEntity named_entities[] = {
    {L"amp", L'&'},        {L"lt", L'<'},         {L"gt", L'>'},         {L"quot", L'"'},        {L"apos", L'\''},
    {L"nbsp", L'\u00A0'},  {L"copy", L'\u00A9'},  {L"reg", L'\u00AE'},   {L"middot", L'\u00B7'}, {L"laquo", L'\u00AB'},
    {L"raquo", L'\u00BB'}, {L"ndash", L'\u2013'}, {L"mdash", L'\u2014'}, {L"lsquo", L'\u2018'},  {L"rsquo", L'\u2019'},
    {L"ldquo", L'\u201C'}, {L"rdquo", L'\u201D'}, {L"bull", L'\u2022'},  {L"hellip", L'\u2026'}, {L"euro", L'\u20AC'},
};

constexpr wchar_t replacement = L'\uFFFD';

std::wstring CharacterOf(std::uint32_t i_code_point) {
    constexpr std::uint32_t first_surrogate = 0xD800;
    constexpr std::uint32_t last_surrogate = 0xDFFF;
    constexpr std::uint32_t first_pair = 0x10000;
    constexpr std::uint32_t last = 0x10FFFF;
    if (i_code_point == 0 || i_code_point > last || (i_code_point >= first_surrogate && i_code_point <= last_surrogate))
        return {replacement};
    if (i_code_point < first_pair)
        return {static_cast<wchar_t>(i_code_point)};
    const std::uint32_t offset = i_code_point - first_pair;
    return {static_cast<wchar_t>(0xD800 + (offset >> 10)), static_cast<wchar_t>(0xDC00 + (offset & 0x3FF))};
}

/// The character for the text between "&#" and ";"; nothing if that isn't a number.
std::wstring NumberedCharacter(std::wstring_view i_number) {
    const bool is_hexadecimal = i_number.starts_with(L'x') || i_number.starts_with(L'X');
    const std::wstring_view digits = i_number.substr(is_hexadecimal ? 1 : 0);
    const std::uint32_t base = is_hexadecimal ? 16 : 10;
    constexpr std::wstring_view all_digits = L"0123456789abcdef0123456789ABCDEF";
    std::uint32_t code_point = 0;
    for (const wchar_t digit : digits) {
        const std::size_t position = all_digits.find(digit);
        if (position == std::wstring_view::npos || position % 16 >= base)
            return {};
        if (code_point <= 0x10FFFF) // Already out of range; further digits only make it larger.
            code_point = code_point * base + static_cast<std::uint32_t>(position % 16);
    }
    return digits.empty() ? std::wstring() : CharacterOf(code_point);
}

/// The character for the text between "&" and ";"; nothing if it is unknown.
std::wstring EntityCharacter(std::wstring_view i_entity) {
    if (i_entity.starts_with(L'#'))
        return NumberedCharacter(i_entity.substr(1));
    for (const NamedEntity& named : named_entities)
        if (named.name == i_entity)
            return {named.character};
    return {};
}

} // namespace

std::wstring ReplaceEntities(std::wstring_view i_text) {
    constexpr std::size_t max_entity_length = 12;
    std::wstring result;
    for (std::size_t begin = 0; begin < i_text.size();) {
        const std::size_t ampersand = std::min(i_text.find(L'&', begin), i_text.size());
        result += i_text.substr(begin, ampersand - begin);
        const std::size_t semicolon = i_text.substr(ampersand, max_entity_length).find(L';');
        const std::wstring character = semicolon != std::wstring_view::npos
                                           ? EntityCharacter(i_text.substr(ampersand + 1, semicolon - 1))
                                           : std::wstring();
        if (!character.empty())
            result += character;
        else if (ampersand < i_text.size())
            result += L'&';
        begin = ampersand + (character.empty() ? 1 : semicolon + 1);
    }
    return result;
}

} // namespace DevHost
