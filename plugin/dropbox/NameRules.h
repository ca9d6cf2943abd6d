#pragma once

#include <string_view>

namespace Dropbox {

/// Whether the service accepts a text as the name of a new file or folder: one element of a path, of at most 255 UTF-16
/// units, without a trailing space, that can be sent verbatim and is not the name of a program's own file.
bool TakesName(std::wstring_view i_name);

} // namespace Dropbox
