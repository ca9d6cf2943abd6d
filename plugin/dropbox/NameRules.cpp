#include "dropbox/NameRules.h"

#include "core/trace/Text.h"
#include "core/trace/Trace.h"
#include "dropbox/RemotePath.h"

#include <algorithm>
#include <cwctype>

namespace {

constexpr std::size_t longest_name = 255; // UTF-16 units, the service's own limit.
/// Names the service never accepts, because programs create such files for themselves.
constexpr std::wstring_view refused_names[] = {L"desktop.ini", L"thumbs.db", L".ds_store",
                                               L"icon\r",      L".dropbox",  L".dropbox.attr"};

/// Also editors' lock, temporary and backup files.
bool IsRefusedName(std::wstring_view i_name) {
    TRACE_FUNCTION();
    constexpr std::wstring_view temporary = L".tmp";
    return std::ranges::any_of(refused_names,
                               [&](std::wstring_view i_refused) { return EqualsNoCase(i_name, i_refused); }) ||
           i_name.starts_with(L"~$") || i_name.starts_with(L".~") ||
           (i_name.starts_with(L'~') && i_name.ends_with(temporary));
}

} // namespace

bool Dropbox::TakesName(std::wstring_view i_name) {
    TRACE_FUNCTION();
    const bool is_element = !i_name.empty() && i_name.size() <= longest_name && i_name != L"." && i_name != L".." &&
                            i_name.find(L'/') == std::wstring_view::npos && std::iswspace(i_name.back()) == 0;
    return is_element && CanBeSent(i_name) && !IsRefusedName(i_name);
}
