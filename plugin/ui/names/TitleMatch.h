#pragma once

#include <string>
#include <string_view>

namespace Ui {

// Whether two titles are one and the same item's. Only case is ignored, letter by letter, as the service does it. The
// platform's linguistic comparison would also take "strasse" for "straße", and ignore characters without width: such
// a likeness must never be taken for the item that the user means.

bool IsSameTitle(std::wstring_view i_left, std::wstring_view i_right) noexcept;

/// A key for looking titles up: the same titles have equal keys.
std::wstring TitleKey(std::wstring_view i_title);

} // namespace Ui
