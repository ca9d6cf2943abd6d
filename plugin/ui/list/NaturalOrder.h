#pragma once

#include <string>
#include <string_view>

namespace Ui {

/// The sort key of a title: titles are ordered by their keys' bytes (`std::string`'s own order). Numbers are ordered by
/// value ("2" before "10"), case is ignored, and accents and other scripts are ordered as in the invariant locale.
/// Titles that differ only in ignored characters, such as characters without width, still have different keys: their
/// order is fixed, and only equal titles have equal keys.
std::string NaturalSortKey(std::wstring_view i_title);

} // namespace Ui
