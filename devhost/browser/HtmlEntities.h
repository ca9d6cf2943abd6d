#pragma once

#include <string>
#include <string_view>

namespace DevHost {

/// Replaces "&amp;", "&#228;" and the like by their characters; an unknown entity stays.
std::wstring ReplaceEntities(std::wstring_view i_text);

} // namespace DevHost
