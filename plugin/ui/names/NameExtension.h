#pragma once

#include "core/trace/FunctionName.h"
#include "qorv/Base.h"

#include <optional>
#include <string>
#include <string_view>

namespace Ui {

// Extensions of file names, as the platform sees them.

/// The extension of a name's last path element, with its dot ("." for "a."); empty if the element has none. No value
/// for the empty name only. A view of the name.
std::optional<std::wstring_view> FindExtension(std::wstring_view i_name);

/// How many characters to select for somebody who types another name: those before the extension, -1 for all.
LONG StemLength(std::wstring_view i_name);

/// An extension without its leading dot.
std::wstring_view WithoutDot(std::wstring_view i_extension) noexcept;

/// Appends an extension, with a dot before it unless the name ends with one. Logs under the caller's name.
void AddExtension(std::wstring& io_name, std::wstring_view i_extension, const FunctionName& i_caller);

/// The default-extension rule: a name with another extension gets the default one appended ("a.txt.pdf"). Does
/// nothing without a default extension. Logs its decision under the caller's name.
void ApplyDefaultExtension(std::wstring& io_name, std::wstring_view i_default_ext, const FunctionName& i_caller);

} // namespace Ui
