#pragma once

#include "support/TemporaryFolder.h"

#include <filesystem>

namespace Tests {

inline constexpr wchar_t module_name[] = L"Dropbox.qvp";

/// The module that ships.
inline std::filesystem::path ModulePath() {
    return std::filesystem::path(L"Z:" MODULE_PATH);
}

} // namespace Tests
