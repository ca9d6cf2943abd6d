#include "commands/CommandLine.h"

#include "base/Unicode.h"
#include "commands/Commands.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

constexpr std::array trace_levels{"off", "debugger", "file"};

fs::path DefaultModule() {
    std::array<wchar_t, 1024> program{};
    GetModuleFileNameW(nullptr, program.data(), DWORD{program.size()});
    return fs::path(program.data()).parent_path() / L"Dropbox.qvp";
}

fs::path DefaultProfile() {
    std::array<wchar_t, 1024> folder{};
    GetEnvironmentVariableW(L"LOCALAPPDATA", folder.data(), DWORD{folder.size()});
    return fs::path(folder.data()) / L"qorvhost";
}

// The parser's words: UTF-8, but with each half of a surrogate pair on its own. So a lone surrogate, which Windows file
// names may contain, survives too.

std::string ToWord(std::wstring_view i_text) {
    std::string word;
    for (const unsigned unit : i_text) {
        if (unit < 0x80) {
            word += static_cast<char>(unit);
            continue;
        }
        if (unit < 0x800) {
            word += static_cast<char>(0xC0 | unit >> 6);
        } else {
            word += static_cast<char>(0xE0 | unit >> 12);
            word += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
        }
        word += static_cast<char>(0x80 | (unit & 0x3F));
    }
    return word;
}

std::wstring FromWord(std::string_view i_word) {
    std::wstring text;
    for (const unsigned char byte : i_word)
        if (byte < 0x80)
            text += static_cast<wchar_t>(byte);
        else if (byte < 0xC0) // Continues the current unit.
            text.back() = static_cast<wchar_t>(text.back() << 6 | (byte & 0x3F));
        else
            text += static_cast<wchar_t>(byte & (byte < 0xE0 ? 0x1F : 0x0F));
    return text;
}

/// Without a list of the operands: the usage says enough about them.
class HelpFormatter final : public CLI::Formatter {
    std::string make_positionals(const CLI::App*) const override { return {}; }
};

void AddProgramOptions(CLI::App& io_program) {
    const CLI::Validator not_empty(
        [](const std::string& i_word) { return std::string(i_word.empty() ? "a name is needed" : ""); }, "");
    io_program.add_option("--profile", "where accounts, settings and the files cache are kept")
        ->check(not_empty)
        ->type_name("DIR");
    io_program.add_option("--user", "the account that paths are in; by default the first saved one")
        ->check(not_empty)
        ->type_name("ID|NAME");
    io_program
        .add_option("--trace",
                    "the plug-in's log during this command; the file is Qorvx-Dropbox.log in the temporary folder")
        ->check(CLI::IsMember(std::vector<std::string>(trace_levels.begin(), trace_levels.end())).description(""))
        ->type_name("off|debugger|file");
    io_program.add_option("--module", "the plug-in; by default Dropbox.qvp beside this program")
        ->check(not_empty)
        ->type_name("PATH");
    io_program.add_flag("--no-progress")->description("no line that tells how far a transfer is");
    io_program.add_flag("--json")->description("write results as JSON, one value per command");
}

std::shared_ptr<CLI::App> MakeProgram(CommandLine::Origin i_origin) {
    auto program = std::make_shared<CLI::App>("A small host for the plug-in.", "qorvhost");
    program->allow_windows_style_options(false); // "/a" is a location.
    program->fallthrough();
    program->require_subcommand(0, 1); // We report a missing one in our own words.
    program->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    program->set_help_flag("-h,--help", "show this text");
    if (i_origin == CommandLine::Origin::Program)
        program->set_version_flag("--version", "qorvhost " QORVHOST_VERSION, "show the version");
    const auto formatter = std::make_shared<HelpFormatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    program->formatter(formatter);
    program->footer("A LOCATION is a path in the account (/Documents/a.pdf) or a full location "
                    "(dropbox://ID/Documents/a.pdf).\n"
                    "Exit codes: 0 done, 1 failed, 2 invalid command, 3 the plug-in left something behind,\n"
                    "            4 canceled in a window, 130 stopped by Ctrl+C.");
    if (i_origin == CommandLine::Origin::Program)
        AddProgramOptions(*program);
    AddCommands(*program);
    return program;
}

/// The command that the parser has found; the program itself if there is none.
const CLI::App& CommandOf(const CLI::App& i_program) {
    const auto commands = i_program.get_subcommands();
    return commands.empty() ? i_program : *commands.front();
}

bool HasUnknownCommand(const CLI::App& i_program) {
    return i_program.get_subcommands().empty() && i_program.remaining_size() != 0;
}

UsageError Misuse(const std::string& i_text, const std::string& i_command) {
    return UsageError(ToUtf8(FromWord(i_text)) + ". Try: " + i_command + " --help");
}

UsageError UnknownCommand(const CLI::App& i_program) {
    const std::string word = i_program.remaining().front();
    return Misuse((word.starts_with('-') ? "There is no option \"" : "There is no command \"") + word + '"',
                  "qorvhost");
}

} // namespace

CommandLine::CommandLine(const Arguments& i_words, Origin i_origin)
    : m_program(MakeProgram(i_origin)), m_command(m_program.get()) {
    std::vector<std::string> words; // The parser takes them in reverse order.
    std::transform(i_words.rbegin(), i_words.rend(), std::back_inserter(words), ToWord);
    try {
        m_program->parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (HasUnknownCommand(*m_program))
            throw UnknownCommand(*m_program);
        m_command = &CommandOf(*m_program);
        if (error.get_exit_code() != 0)
            throw Misuse(error.what(), m_command == m_program.get() ? Name() : "qorvhost " + Name());
        m_help = error.get_name() == "CallForVersion" ? error.what() : m_program->help();
        m_help.erase(m_help.find_last_not_of('\n') + 1);
        return;
    }
    m_command = &CommandOf(*m_program);
    if (m_command == m_program.get())
        throw Misuse("A command is missing", "qorvhost");
    if (Name() == "help") {
        const std::wstring command = Text("COMMAND");
        *this = CommandLine(command.empty() ? Arguments{L"--help"} : Arguments{command, L"--help"}, i_origin);
    }
}

Options CommandLine::ProgramOptions() const {
    Options options;
    // Make the paths absolute now: a relative one could later mean another place.
    options.profile = fs::absolute(Has("--profile") ? fs::path(Text("--profile")) : DefaultProfile());
    options.module = fs::absolute(Has("--module") ? fs::path(Text("--module")) : DefaultModule());
    options.user = Text("--user");
    if (Has("--trace"))
        options.trace = std::ranges::find(trace_levels, ToUtf8(Text("--trace"))) - trace_levels.begin();
    options.is_json = Has("--json");
    options.shows_progress = !Has("--no-progress");
    return options;
}

std::string CommandLine::Name() const {
    return m_command->get_name();
}

bool CommandLine::Has(const char* i_name) const {
    return Find(i_name).count() != 0;
}

std::wstring CommandLine::Text(const char* i_name) const {
    return FromWord(Find(i_name).as<std::string>());
}

LONG CommandLine::Number(const char* i_name) const {
    return static_cast<LONG>(Find(i_name).as<long long>());
}

const CLI::Option& CommandLine::Find(const char* i_name) const {
    const CLI::Option* const own = m_command->get_option_no_throw(i_name);
    return own != nullptr ? *own : *m_program->get_option(i_name);
}

Arguments SplitLine(std::wstring_view i_line) {
    Arguments words;
    bool is_in_word = false;
    bool is_quoted = false;
    for (const wchar_t character : i_line) {
        const bool is_blank = character == L' ' || character == L'\t' || character == L'\r';
        if (is_blank && !is_quoted) {
            is_in_word = false;
            continue;
        }
        if (!is_in_word) {
            if (character == L'#')
                break;
            words.emplace_back();
            is_in_word = true;
        }
        if (character == L'"')
            is_quoted = !is_quoted;
        else
            words.back() += character;
    }
    if (is_quoted)
        throw UsageError("a double quote is missing");
    return words;
}

} // namespace DevHost
