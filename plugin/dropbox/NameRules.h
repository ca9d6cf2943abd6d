#pragma once

#include <string_view>

namespace Dropbox {

/// Whether the service takes a text as the name of a new file or folder: one element of a path, of at most 255 UTF-16
/// units, without a blank at its end, that can be sent as it is and is not that of a program's own file.
bool TakesName(std::wstring_view i_name);

} // namespace Dropbox
