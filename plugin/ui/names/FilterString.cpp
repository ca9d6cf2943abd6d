#include "ui/names/FilterString.h"

#include "core/trace/Trace.h"

namespace Ui {
namespace {

/// Takes the text up to the next separator, and the separator, off the front. False when there is no separator.
bool TakePart(std::wstring_view& io_rest, wchar_t i_separator, std::wstring_view& o_part) {
    TRACE_FUNCTION();
    const std::size_t end = io_rest.find(i_separator);
    o_part = io_rest.substr(0, end);
    io_rest.remove_prefix(end == std::wstring_view::npos ? io_rest.size() : end + 1);
    return end != std::wstring_view::npos;
}

FilterExtensions ParsePatterns(std::wstring_view i_patterns) {
    TRACE_FUNCTION();
    FilterExtensions extensions;
    for (bool is_more = true; is_more;) {
        std::wstring_view pattern;
        is_more = TakePart(i_patterns, L';', pattern);
        if (pattern == all_files_extension)
            return {all_files_extension};
        if (pattern.starts_with(L'*'))
            pattern.remove_prefix(1);
        if (pattern.starts_with(L'.'))
            pattern.remove_prefix(1);
        if (pattern.starts_with(L'*'))
            return {all_files_extension}; // Whatever else the list names.
        if (!pattern.empty())
            extensions.emplace_back(pattern);
    }
    return extensions;
}

} // namespace

std::vector<FilterEntry> ParseFilterString(std::wstring_view i_filters) {
    TRACE_FUNCTION();
    std::vector<FilterEntry> entries;
    std::wstring_view text, patterns;
    while (TakePart(i_filters, L'|', text) && !text.empty() && TakePart(i_filters, L'|', patterns) && !patterns.empty())
        entries.push_back({std::wstring(text), ParsePatterns(patterns)});
    return entries;
}

} // namespace Ui
