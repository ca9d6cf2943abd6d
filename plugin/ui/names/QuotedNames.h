#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Ui {

/// The names of a quoted list, "a.pdf" "b.pdf", each in double quotes, with any number of blanks between and around
/// them. Blanks at the ends of a name are cut. A name of less than two characters is left out, and that is meant: the
/// list may be empty. No value for a text that is no such list.
std::optional<std::vector<std::wstring>> ParseQuotedNames(std::wstring_view i_text);

} // namespace Ui
