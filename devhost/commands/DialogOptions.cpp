#include "commands/DialogOptions.h"

#include <CLI/CLI.hpp>

#include <limits>

namespace DevHost {
namespace {

struct TextOption {
    const char* name;
    const wchar_t* item;
    const char* value; ///< Its name in the help.
    const char* meaning;
};

constexpr TextOption text_options[] = {
    {"--title", L"Title", "TEXT", "title of the window"},
    {"--action-title", L"ActionBtnTitle", "TEXT", "caption of the Open or Save button"},
    {"--cancel-title", L"CancelBtnTitle", "TEXT", "caption of the Cancel button"},
    {"--settings-title", L"SettingsBtnTitle", "TEXT", "caption of the options button"},
    {"--filters", L"FileFilters", "LIST", "file types: \"PDF files|*.pdf;*.fdf|All files|*.*|\""},
    {"--default-ext", L"DefaultExt", "EXT", "extension of typed names that have none, without a dot"},
    {"--name", L"InitialFileName", "NAME", "what the name box begins with"},
};

struct FlagOption {
    const char* name;
    LONG bit;
    const char* meaning;
};

// With no bits set the dialog uses its defaults: opens several names, asks before replacing a file.
constexpr FlagOption flag_options[] = {
    {"--several", 1, "flag 1: several files may be chosen"},
    {"--ask-to-replace", 4, "flag 4: a question before a file is replaced"},
    {"--prefer-default-ext", 16, "flag 16: typed names get the default extension, not the file type's"},
};

void AddNumber(CLI::App& io_command, const char* i_name, const std::string& i_meaning) {
    constexpr long long least = std::numeric_limits<LONG>::min();
    constexpr long long most = std::numeric_limits<ULONG>::max();
    io_command.add_option(i_name, i_meaning)->check(CLI::Range(least, most).description(""))->type_name("N");
}

} // namespace

DialogOptions::DialogOptions(const CommandLine& i_line)
    : location(i_line.Has("LOCATION") ? i_line.Text("LOCATION") : L"/"), has_settings(i_line.Has("--settings")) {
    for (const TextOption& option : text_options)
        if (i_line.Has(option.name))
            items[option.item] = i_line.Text(option.name);
    LONG flags = i_line.Number("--flags");
    for (const FlagOption& option : flag_options)
        if (i_line.Has(option.name))
            flags |= option.bit;
    if (flags != 0)
        items[L"Flags"] = flags;
    if (i_line.Has("--filter-index"))
        items[L"FileFilterIndex"] = i_line.Number("--filter-index");
    if (i_line.Has("--in"))
        folder = i_line.Text("--in");
}

void AddDialogOptions(CLI::App& io_command) {
    io_command.add_option("--in", "a folder to begin in that goes before LOCATION, as of a host that remembers one")
        ->type_name("LOCATION");
    for (const TextOption& option : text_options)
        io_command.add_option(option.name, option.meaning)->type_name(option.value);
    AddNumber(io_command, "--filter-index", "the file type to begin with, counted from 0");
    io_command.add_flag("--settings")->description("an options button, which shows a message");
    for (const FlagOption& option : flag_options)
        io_command.add_flag(option.name, option.meaning);
    AddNumber(io_command, "--flags", "any bits, as a number such as 17 or 0x11");
}

} // namespace DevHost
