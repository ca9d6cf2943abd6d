#include "commands/DialogOptions.h"

#include <algorithm>
#include <cwchar>
#include <limits>

namespace DevHost {
namespace {

// Ids of the parameters' numbers.
constexpr wchar_t flags_item[] = L"Flags";
constexpr wchar_t filter_index_item[] = L"FileFilterIndex";

struct TextOption {
    std::wstring_view name;
    const wchar_t* item;
    const wchar_t* value; ///< What it is called in the help.
    const wchar_t* meaning;
};

constexpr TextOption text_options[] = {
    {L"--title", L"Title", L"TEXT", L"title of the window"},
    {L"--action-title", L"ActionBtnTitle", L"TEXT", L"caption of the Open or Save button"},
    {L"--cancel-title", L"CancelBtnTitle", L"TEXT", L"caption of the Cancel button"},
    {L"--settings-title", L"SettingsBtnTitle", L"TEXT", L"caption of the options button"},
    {L"--filters", L"FileFilters", L"LIST", L"file types: \"PDF files|*.pdf;*.fdf|All files|*.*|\""},
    {L"--default-ext", L"DefaultExt", L"EXT", L"extension of typed names that have none, without a dot"},
    {L"--name", L"InitialFileName", L"NAME", L"what the name box begins with"},
};

struct FlagOption {
    std::wstring_view name;
    LONG bit;
    const wchar_t* meaning;
};

// Without any bit the dialog takes its own: several names to open, a question before a file is replaced.
constexpr FlagOption flag_options[] = {
    {L"--several", 1, L"flag 1: several files may be chosen"},
    {L"--ask-to-replace", 4, L"flag 4: a question before a file is replaced"},
    {L"--prefer-default-ext", 16, L"flag 16: typed names get the default extension, not the file type's"},
};

LONG NumberOf(const std::wstring& i_option, const std::wstring& i_text) {
    const wchar_t* const begin = i_text.c_str();
    wchar_t* end = nullptr;
    const long long number = std::wcstoll(begin, &end, 0);
    if (end == begin || *end != L'\0' || number < std::numeric_limits<LONG>::min() ||
        number > std::numeric_limits<ULONG>::max())
        throw UsageError(i_option + L" takes a number, like 17 or 0x11");
    return static_cast<LONG>(number);
}

template <typename Option, size_t count>
const Option* Find(const Option (&i_options)[count], std::wstring_view i_name) {
    const auto found = std::ranges::find(i_options, i_name, &Option::name);
    return found != std::end(i_options) ? found : nullptr;
}

} // namespace

DialogOptions DialogOptions::Parse(const Arguments& i_arguments) {
    DialogOptions options;
    LONG flags = 0;
    bool has_location = false;
    for (size_t i = 0; i < i_arguments.size(); ++i) {
        const std::wstring& argument = i_arguments[i];
        const auto value = [&]() -> const std::wstring& {
            if (i + 1 == i_arguments.size())
                throw UsageError(argument + L" needs a value");
            return i_arguments[++i];
        };
        if (const TextOption* const text = Find(text_options, argument)) {
            options.items[text->item] = value();
        } else if (const FlagOption* const flag = Find(flag_options, argument)) {
            flags |= flag->bit;
        } else if (argument == L"--flags") {
            flags |= NumberOf(argument, value());
        } else if (argument == L"--filter-index") {
            options.items[filter_index_item] = NumberOf(argument, value());
        } else if (argument == L"--in") {
            options.folder = value();
        } else if (argument == L"--folder") {
            options.selects_folder = true;
        } else if (argument == L"--settings") {
            options.has_settings = true;
        } else if (argument.starts_with(L"-") || has_location) {
            throw UsageError();
        } else {
            options.location = argument;
            has_location = true;
        }
    }
    if (flags != 0)
        options.items[flags_item] = flags;
    return options;
}

void DialogOptions::Explain(const Output& i_out) {
    std::vector<std::vector<std::wstring>> rows{
        {L"  LOCATION", L"the folder to begin in; the account's root if not given"},
        {L"  --in LOCATION", L"a folder to begin in that goes before LOCATION, as of a host that remembers one"},
        {L"  --folder", L"choose a folder (open-dialog only)"},
    };
    for (const TextOption& option : text_options)
        rows.push_back({L"  " + std::wstring(option.name) + L" " + option.value, option.meaning});
    rows.push_back({L"  --filter-index N", L"the file type to begin with, counted from 0"});
    rows.push_back({L"  --settings", L"an options button, which shows a message"});
    for (const FlagOption& option : flag_options)
        rows.push_back({L"  " + std::wstring(option.name), option.meaning});
    rows.push_back({L"  --flags N", L"any bits, as a number"});
    i_out.Table(rows);
}

} // namespace DevHost
