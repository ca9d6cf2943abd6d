#pragma once

#include <string>

namespace Ui {

/// A number as the user writes it: "10,000".
std::wstring CountText(std::size_t i_count);

} // namespace Ui
