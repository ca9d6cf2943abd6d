#pragma once

#include <string>
#include <string_view>

namespace Ui {

/// The sort key of a title: titles stand in the order of their keys' bytes (`std::string`'s own). Numbers count by
/// their value ("2" before "10"), case does not count, accents and other scripts stand where the invariant locale has
/// them. Titles that differ only in what does not count, such as characters without width, have different keys all the
/// same: their order is fixed, and only equal titles have equal keys.
std::string NaturalSortKey(std::wstring_view i_title);

} // namespace Ui
