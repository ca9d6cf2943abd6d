#include "ui/names/QuotedNames.h"

#include "core/trace/Trace.h"

#include <algorithm>

namespace Ui {
namespace {

constexpr wchar_t blank = L' ';
constexpr wchar_t quote = L'"';

std::wstring_view TrimStart(std::wstring_view i_text) {
    TRACE_FUNCTION();
    return i_text.substr(std::min(i_text.find_first_not_of(blank), i_text.size()));
}

std::wstring_view Trim(std::wstring_view i_text) {
    TRACE_FUNCTION();
    return TrimStart(i_text.substr(0, i_text.find_last_not_of(blank) + 1));
}

} // namespace

std::optional<std::vector<std::wstring>> ParseQuotedNames(std::wstring_view i_text) {
    TRACE_FUNCTION();
    std::vector<std::wstring> names;
    for (std::wstring_view rest = TrimStart(i_text); !rest.empty(); rest = TrimStart(rest)) {
        const std::size_t end = rest.front() == quote ? rest.find(quote, 1) : std::wstring_view::npos;
        if (end == std::wstring_view::npos)
            return std::nullopt;
        if (const auto name = Trim(rest.substr(1, end - 1)); name.size() > 1)
            names.emplace_back(name);
        rest.remove_prefix(end + 1);
    }
    return names;
}

} // namespace Ui
