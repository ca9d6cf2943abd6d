#pragma once

#include "core/trace/Trace.h"

#include <cwchar>
#include <string>

/// Formats a text for the log, cut off at the capacity. Write `%ls` for wide arguments: the wide `printf` of some
/// runtimes reads `%s` as narrow text.
template <typename... Arguments>
std::wstring FormatLogText(const wchar_t* i_format, Arguments... i_arguments) {
    TRACE_FUNCTION();
    constexpr std::size_t capacity = 10240;
    std::wstring text(capacity, L'\0');
    // The result is not used: runtimes disagree on it when the text is cut.
    std::swprintf(text.data(), text.size(), i_format, i_arguments...);
    text.back() = L'\0';
    text.resize(std::wcslen(text.c_str()));
    return text;
}
