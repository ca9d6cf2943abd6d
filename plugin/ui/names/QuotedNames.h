#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Ui {

/// The names of a quoted list, "a.pdf" "b.pdf", each in double quotes, with any number of spaces between and around
/// them. Spaces at the ends of a name are removed. Names of fewer than two characters are left out, deliberately, so
/// the list may be empty. No value if the text isn't such a list.
std::optional<std::vector<std::wstring>> ParseQuotedNames(std::wstring_view i_text);

} // namespace Ui
