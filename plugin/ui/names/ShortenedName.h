#pragma once

#include <string>
#include <string_view>

namespace Ui {

/// A name or path for a sentence. What is longer than 80 characters loses its middle: the beginning and the end, with
/// the extension, tell most.
std::wstring ShortenedName(std::wstring_view i_name);

} // namespace Ui
