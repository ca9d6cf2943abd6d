#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace DevHost {

using Arguments = std::vector<std::wstring>;

/// The user typed something that is no command: a sentence for the user.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(std::wstring i_text = {});
    const std::wstring& Text() const noexcept { return m_text; }

private:
    std::wstring m_text;
};

/// What was typed.
struct Options {
    std::filesystem::path profile;      ///< Where accounts, settings and the files cache are kept.
    std::filesystem::path module;       ///< The plug-in.
    std::wstring user;                  ///< Id of the account that paths are in; empty: the first one.
    std::optional<unsigned long> trace; ///< Value of the debug log's switch; none: as it is set.
    bool is_json = false;
    Arguments command; ///< The command's name and its arguments.
};

/// Options may stand anywhere before a "--". Throws a `UsageError`.
Options ParseOptions(const Arguments& i_arguments);

/// Divides a line at its blanks; double quotes keep blanks together. A "#" at the beginning of a word begins a comment.
/// Throws a `UsageError` for a quote that does not end.
Arguments SplitLine(std::wstring_view i_line);

} // namespace DevHost
