#include "ui/names/NameExtension.h"

#include "core/trace/LogText.h"
#include "core/trace/Text.h"
#include "core/trace/Trace.h"

#include <shlwapi.h>

namespace Ui {
namespace {

/// The platform's look-up doesn't know "/", nor texts longer than its paths.
std::wstring LookupText(std::wstring_view i_name) {
    TRACE_FUNCTION();
    i_name.remove_prefix(i_name.rfind(L'/') + 1); // Removes nothing if there is none: npos + 1 is 0.
    constexpr std::size_t capacity = MAX_PATH - 1;
    if (i_name.size() > capacity)
        i_name.remove_prefix(i_name.size() - capacity);
    return std::wstring(i_name);
}

} // namespace

std::optional<std::wstring_view> FindExtension(std::wstring_view i_name) {
    TRACE_FUNCTION();
    if (i_name.empty())
        return std::nullopt;
    const std::wstring text = LookupText(i_name);
    const wchar_t* const found = PathFindExtensionW(text.c_str());
    // To the name's end, not to a NUL within it.
    const std::ptrdiff_t length = *found == L'.' ? text.c_str() + text.size() - found : 0;
    return i_name.substr(i_name.size() - static_cast<std::size_t>(length));
}

LONG StemLength(std::wstring_view i_name) {
    TRACE_FUNCTION();
    const std::size_t length = i_name.size() - FindExtension(i_name).value_or(L"").size();
    return length > 0 ? static_cast<LONG>(length) : -1;
}

std::wstring_view WithoutDot(std::wstring_view i_extension) noexcept {
    TRACE_FUNCTION();
    return i_extension.substr(i_extension.starts_with(L'.') ? 1 : 0);
}

void AddExtension(std::wstring& io_name, std::wstring_view i_extension, const FunctionName& i_caller) {
    TRACE_FUNCTION();
    if (i_extension.empty()) {
        TraceText(i_caller, L"ERROR: Extension to add is empty - adding nothing");
        return;
    }
    if (!io_name.ends_with(L'.'))
        io_name += L'.';
    io_name += i_extension;
}

void ApplyDefaultExtension(std::wstring& io_name, std::wstring_view i_default_ext, const FunctionName& i_caller) {
    TRACE_FUNCTION();
    if (i_default_ext.empty())
        return;
    const std::wstring default_ext(i_default_ext);
    if (EqualsNoCase(WithoutDot(FindExtension(io_name).value_or(L"")), default_ext)) {
        TraceText(i_caller, L"INFORMATION: Name has extension, it is same as default extensions - adding nothing");
        return;
    }
    if (IsLogEnabled())
        TraceText(i_caller, FormatLogText(L"INFORMATION: Name either has no extension or it's different from default - "
                                          L"adding default '%ls'",
                                          default_ext.c_str()));
    AddExtension(io_name, default_ext, i_caller);
}

} // namespace Ui
