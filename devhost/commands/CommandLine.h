#pragma once

#include "qorv/Base.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace DevHost {

using Arguments = std::vector<std::wstring>;

/// The user typed something that isn't a command. The text is a sentence for the user, in UTF-8.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The options that apply to all commands of a run.
struct Options {
    std::filesystem::path profile;      ///< Where accounts, settings and the files cache are kept.
    std::filesystem::path module;       ///< The plug-in.
    std::wstring user;                  ///< Id or name of the account that paths are in; empty for the first one.
    std::optional<unsigned long> trace; ///< Value of the debug log's switch for this run; none leaves it as it is.
    bool is_json = false;
    bool shows_progress = true;
};

/// A command as it was typed, after a check of what it takes. Options may stand anywhere before a "--".
class CommandLine {
public:
    /// Who typed it: a script's line has none of the program's options.
    enum class Origin { Program, Script };

    /// Throws a `UsageError`.
    explicit CommandLine(const Arguments& i_words, Origin i_origin = Origin::Program);

    Options ProgramOptions() const;

    /// The command's name.
    std::string Name() const;
    /// Not empty when help, or the version, was asked for: the command is not run then.
    const std::string& Help() const noexcept { return m_help; }

    // An operand or option of the command, or an option of the program, by the name in its definition: "LOCATION",
    // "-R".

    bool Has(const char* i_name) const;
    /// Empty, and 0, for what was not typed.
    std::wstring Text(const char* i_name) const;
    LONG Number(const char* i_name) const;

private:
    const CLI::Option& Find(const char* i_name) const;

    std::shared_ptr<CLI::App> m_program;
    const CLI::App* m_command; ///< A part of the program, or the program itself when help was asked for.
    std::string m_help;
};

/// Splits a line at spaces; double quotes protect spaces. A "#" at the beginning of a word begins a comment. Throws a
/// `UsageError` for a quote that does not end.
Arguments SplitLine(std::wstring_view i_line);

} // namespace DevHost
