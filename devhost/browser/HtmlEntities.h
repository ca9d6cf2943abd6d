#pragma once

#include <string>
#include <string_view>

namespace DevHost {

/// Replaces "&amp;", "&#228;" and the like with their characters; leaves unknown entities alone.
std::wstring ReplaceEntities(std::wstring_view i_text);

} // namespace DevHost
