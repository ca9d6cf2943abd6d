#include "commands/CommandLine.h"

#include "base/Unicode.h"

#include "qorv/Base.h"

#include <array>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t module_name[] = L"Dropbox.qvp";
constexpr wchar_t profile_name[] = L"qorvhost";

fs::path ProgramFolder() {
    std::array<wchar_t, 1024> path{};
    GetModuleFileNameW(nullptr, path.data(), DWORD{path.size()});
    return fs::path(path.data()).parent_path();
}

fs::path DefaultProfile() {
    std::array<wchar_t, 1024> folder{};
    GetEnvironmentVariableW(L"LOCALAPPDATA", folder.data(), DWORD{folder.size()});
    return fs::path(folder.data()) / profile_name;
}

unsigned long TraceLevel(const std::wstring& i_name) {
    constexpr std::array<std::wstring_view, 3> names{L"off", L"debugger", L"file"};
    for (unsigned long level = 0; level < names.size(); ++level)
        if (names[level] == i_name)
            return level;
    throw UsageError(L"--trace takes \"off\", \"debugger\" or \"file\"");
}

} // namespace

UsageError::UsageError(std::wstring i_text) : std::runtime_error(ToUtf8(i_text)), m_text(std::move(i_text)) {}

Options ParseOptions(const Arguments& i_arguments) {
    Options options;
    options.profile = DefaultProfile();
    options.module = ProgramFolder() / module_name;
    for (size_t i = 0; i < i_arguments.size(); ++i) {
        const std::wstring& argument = i_arguments[i];
        const auto value = [&]() -> const std::wstring& {
            if (i + 1 == i_arguments.size())
                throw UsageError(argument + L" needs a value");
            return i_arguments[++i];
        };
        if (argument == L"--") {
            options.command.insert(options.command.end(), i_arguments.begin() + i + 1, i_arguments.end());
            break;
        }
        if (argument == L"--profile")
            options.profile = value();
        else if (argument == L"--module")
            options.module = value();
        else if (argument == L"--user")
            options.user = value();
        else if (argument == L"--trace")
            options.trace = TraceLevel(value());
        else if (argument == L"--json")
            options.is_json = true;
        else
            options.command.push_back(argument);
    }
    // The module and the cache stay where they are when a relative path would come to mean another one.
    options.profile = fs::absolute(options.profile);
    options.module = fs::absolute(options.module);
    return options;
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
        throw UsageError(L"a double quote is missing");
    return words;
}

} // namespace DevHost
