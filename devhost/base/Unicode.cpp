#include "base/Unicode.h"

#include "qorv/Base.h"

namespace DevHost {

std::string ToUtf8(std::wstring_view i_text) {
    const auto length = static_cast<int>(i_text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, i_text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, i_text.data(), length, result.data(), size, nullptr, nullptr);
    return result;
}

std::wstring FromUtf8(std::string_view i_text) {
    const auto length = static_cast<int>(i_text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, i_text.data(), length, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, i_text.data(), length, result.data(), size);
    return result;
}

std::wstring OneLine(std::wstring_view i_text) {
    std::wstring line;
    for (const wchar_t character : i_text) {
        const bool is_blank = character <= L' ';
        if (!is_blank)
            line += character;
        else if (!line.empty() && line.back() != L' ')
            line += L' ';
    }
    if (!line.empty() && line.back() == L' ')
        line.pop_back();
    return line;
}

bool EqualIgnoringCase(std::wstring_view i_first, std::wstring_view i_second) {
    return i_first.size() == i_second.size() &&
           CompareStringOrdinal(i_first.data(), static_cast<int>(i_first.size()), i_second.data(),
                                static_cast<int>(i_second.size()), TRUE) == CSTR_EQUAL;
}

} // namespace DevHost
