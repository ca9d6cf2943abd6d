#pragma once

#include "qorv/Base.h"

#include <filesystem>

namespace DevHost {

/// Writes a PNG of a window as it looks on the screen, with its frame. Throws a `Failure`.
void SaveWindowPicture(HWND i_window, const std::filesystem::path& i_path);

} // namespace DevHost
