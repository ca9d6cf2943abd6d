#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Ui {

/// The file extensions of one filter, without "*" and ".". The list of the one entry "*" means all files.
using FilterExtensions = std::vector<std::wstring>;

inline constexpr wchar_t all_files_extension[] = L"*";

/// One file type: its description, and the extensions that pass.
struct FilterEntry {
    std::wstring text;
    FilterExtensions extensions;
};

/// Reads a filter string, "PDF files|*.pdf;*.fdf|All files|*.*|". It ends at the first part that is empty or is not
/// closed by "|": a last pair without its closing "|" is dropped, deliberately. Spaces are kept.
std::vector<FilterEntry> ParseFilterString(std::wstring_view i_filters);

} // namespace Ui
