#pragma once

#include "base/Failure.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace DevHost {

/// Whether a standard stream (STD_ERROR_HANDLE...) goes to a terminal.
bool IsTerminal(DWORD i_stream);

/// What the program writes: text in UTF-8, whatever the console's own code page is.
class Output {
public:
    explicit Output(bool i_is_json);

    /// Whether results are JSON values, one per command.
    bool IsJson() const noexcept { return m_is_json; }

    void Line(std::wstring_view i_text) const;
    void Bytes(const void* i_data, std::size_t i_size) const;
    /// One JSON value, on one line.
    void Json(std::string_view i_value) const;

    /// Columns as wide as their widest text; `i_right_aligned` is the column of numbers, if there is one.
    void Table(const std::vector<std::vector<std::wstring>>& i_rows, std::size_t i_right_aligned = SIZE_MAX) const;

    /// A notice for the user, on standard error.
    void Note(std::wstring_view i_text) const;
    /// A failure: a line on standard error and, if results are JSON, a value as well.
    void Error(const Failure& i_failure) const;

private:
    bool m_is_json;
};

} // namespace DevHost
