#include "commands/Commands.h"

#include "commands/DialogOptions.h"
#include "commands/Shell.h"

#include <algorithm>
#include <array>

namespace DevHost {
namespace {

struct Command {
    std::wstring_view name;
    std::wstring_view usage; ///< Its arguments.
    std::wstring_view summary;
    size_t least;
    size_t most;
    void (*run)(Shell&, const Arguments&);
    void (*explain)(const Output&) = nullptr; ///< Writes its options, when the usage has no room for them.
};

constexpr size_t any_number = 1000;

const std::array commands{
    Command{L"info", L"", L"load the plug-in, show what it says of itself, unload it", 0, 0, ShowInfo},
    Command{L"login", L"[--token TOKEN] [ID]", L"save an account, or sign in to a saved one again", 0, 3, LogIn},
    Command{L"accounts", L"", L"list the saved accounts", 0, 0, ListAccounts},
    Command{L"logout", L"ID", L"forget a saved account", 1, 1, LogOut},
    Command{L"ls", L"[-R] [LOCATION]", L"list a folder; -R with all below it", 0, 2, ListFolder},
    Command{L"stat", L"LOCATION", L"show what is known of a file or folder", 1, 1, ShowItem},
    Command{L"cat", L"LOCATION", L"write a file to the output", 1, 1, WriteToOutput},
    Command{L"get", L"LOCATION FILE", L"download a file", 2, 2, GetFile},
    Command{L"put", L"FILE LOCATION", L"upload a file, in place of an existing one", 2, 2, PutFile},
    Command{L"mkdir", L"LOCATION", L"make a folder", 1, 1, MakeFolder},
    Command{L"rm", L"LOCATION", L"remove a file, or a folder with all in it", 1, 1, RemoveItem},
    Command{L"mv", L"LOCATION NEW-LOCATION", L"move a file, to another account too", 2, 2, MoveItem},
    Command{L"rename", L"LOCATION NEW-NAME", L"rename a file or folder", 2, 2, RenameItem},
    Command{L"cp", L"LOCATION NEW-LOCATION", L"copy a file, to another account too", 2, 2, CopyItem},
    Command{L"open-dialog", L"[OPTIONS] [LOCATION]", L"choose files in the plug-in's dialog", 0, any_number,
            OpenByDialog, DialogOptions::Explain},
    Command{L"save-dialog", L"[OPTIONS] [LOCATION]", L"choose where to save in the plug-in's dialog", 0, any_number,
            SaveByDialog, DialogOptions::Explain},
    Command{L"run", L"FILE", L"run the commands of a file, one a line", 1, 1, RunScript},
    Command{L"help", L"[COMMAND]", L"show this text, or how a command is typed", 0, 1, ShowHelp},
};

const Command& Find(std::wstring_view i_name) {
    const auto found = std::ranges::find(commands, i_name, &Command::name);
    if (found == commands.end())
        throw UsageError((i_name.starts_with(L'-') ? L"There is no option \"" : L"There is no command \"") +
                         std::wstring(i_name) + L"\". Try: qorvhost help");
    return *found;
}

std::wstring UsageOf(const Command& i_command) {
    return L"qorvhost " + std::wstring(i_command.name) + (i_command.usage.empty() ? L"" : L" ") +
           std::wstring(i_command.usage);
}

/// For a command whose arguments cannot be read.
UsageError WrongUsage(const Command& i_command) {
    std::wstring text = L"Usage: " + UsageOf(i_command);
    if (i_command.explain != nullptr)
        text += L". Try: qorvhost help " + std::wstring(i_command.name);
    return UsageError(std::move(text));
}

} // namespace

void RunCommand(Shell& io_shell, const Arguments& i_command) {
    if (i_command.empty())
        throw UsageError(L"Usage: qorvhost [OPTIONS] COMMAND ... Try: qorvhost help");
    const bool is_help = i_command.front() == L"--help" || i_command.front() == L"-h";
    const Command& command = Find(is_help ? std::wstring_view(L"help") : i_command.front());
    const Arguments arguments(i_command.begin() + 1, i_command.end());
    if (arguments.size() < command.least || arguments.size() > command.most)
        throw WrongUsage(command);
    try {
        command.run(io_shell, arguments);
    } catch (const UsageError& error) {
        if (error.Text().empty()) // The command cannot read its arguments.
            throw WrongUsage(command);
        throw;
    }
}

void ShowHelp(Shell& io_shell, const Arguments& i_arguments) {
    const Output& out = io_shell.Out();
    if (!i_arguments.empty()) {
        const Command& command = Find(i_arguments.front());
        out.Line(UsageOf(command));
        out.Line(L"    " + std::wstring(command.summary));
        if (command.explain != nullptr) {
            out.Line(L"");
            command.explain(out);
        }
        return;
    }
    out.Line(L"Usage: qorvhost [OPTIONS] COMMAND ...\n\nCommands:");
    std::vector<std::vector<std::wstring>> rows;
    rows.reserve(commands.size());
    for (const Command& command : commands)
        rows.push_back(
            {L"  " + std::wstring(command.name) + L" " + std::wstring(command.usage), std::wstring(command.summary)});
    out.Table(rows);
    out.Line(L"\nOptions:");
    out.Table({
        {L"  --profile DIR", L"where accounts, settings and the files cache are kept"},
        {L"  --user ID", L"the account that paths are in; the first saved one if not given"},
        {L"  --trace off|debugger|file",
         L"switch the plug-in's log; the file is Qorvx-Dropbox.log in the temporary folder"},
        {L"  --module PATH", L"the plug-in; Dropbox.qvp beside this program if not given"},
        {L"  --json", L"results as JSON, one value a command"},
    });
    out.Line(L"\nA LOCATION is a path in the account (/Documents/a.pdf) or a whole location "
             L"(dropbox://ID/Documents/a.pdf).");
    out.Line(L"Exit codes: 0 done, 1 failed, 2 typed wrongly, 3 the plug-in left something behind.");
}

} // namespace DevHost
