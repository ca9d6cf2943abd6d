#include "commands/Commands.h"

#include "base/Unicode.h"
#include "commands/DialogOptions.h"
#include "commands/Shell.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace DevHost {
namespace {

struct Command {
    const char* name;
    const char* summary;
    std::vector<const char*> operands; ///< Those in brackets are optional.
    void (*run)(Shell&, const CommandLine&);
    void (*add_options)(CLI::App&) = nullptr;
};

void AddLogInOptions(CLI::App& io_command) {
    const CLI::Validator not_empty(
        [](const std::string& i_word) { return std::string(i_word.empty() ? "a token is needed" : ""); }, "");
    io_command.add_option("--token", "save the account of this token, without a sign-in")
        ->check(not_empty)
        ->type_name("TOKEN");
}

void AddListOptions(CLI::App& io_command) {
    io_command.add_flag("-R")->description("list everything below it too");
}

void AddKeptOptions(CLI::App& io_command) {
    io_command.get_option("ACTION")
        ->check(CLI::IsMember({"send", "save", "drop"}).description(""))
        ->needs(io_command.get_option("ID"));
    io_command.footer("Without an ACTION: lists them with their IDs, dates, sizes and locations.\n"
                      "send: uploads them, save: copies them to FILE, drop: removes them for good.");
}

void AddRunOptions(CLI::App& io_command) {
    io_command.footer(
        "FILE is text in UTF-8 with one command per line, as it would follow \"qorvhost\". Double quotes\n"
        "protect spaces, \"#\" begins a comment, and empty lines are skipped. The program's options (--user\n"
        "and so on) stand before \"run\" and hold for all lines. The plug-in is loaded once, and the first\n"
        "line that fails ends the run; one that begins with a single \"-\" (-rm /a.pdf) may fail.");
}

void AddSaveOptions(CLI::App& io_command) {
    AddDialogOptions(io_command);
}

void AddOpenOptions(CLI::App& io_command) {
    io_command.add_flag("--folder")->description("choose a folder");
    AddDialogOptions(io_command);
}

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands{
        {"info", "load the plug-in, show what it says about itself, unload it", {}, ShowInfo},
        {"login", "save an account, or sign in to a saved one again", {"[ID]"}, LogIn, AddLogInOptions},
        {"accounts", "list the saved accounts", {}, ListAccounts},
        {"logout", "forget a saved account", {"ID"}, LogOut},
        {"ls", "list a folder; by default the root", {"[LOCATION]"}, ListFolder, AddListOptions},
        {"stat", "show what is known about a file or folder", {"LOCATION"}, ShowItem},
        {"cat", "write a file to the output", {"LOCATION"}, WriteToOutput},
        {"get", "download a file, to a FILE or into a folder", {"LOCATION", "FILE"}, GetFile},
        {"put", "upload a file, replacing an existing one", {"FILE", "LOCATION"}, PutFile},
        {"mkdir", "make a folder", {"LOCATION"}, MakeFolder},
        {"rm", "remove a file, or a folder with everything in it", {"LOCATION"}, RemoveItem},
        {"mv", "move a file, also to another account", {"LOCATION", "NEW-LOCATION"}, MoveItem},
        {"rename", "rename a file or folder", {"LOCATION", "NEW-NAME"}, RenameItem},
        {"cp", "copy a file, also to another account", {"LOCATION", "NEW-LOCATION"}, CopyItem},
        {"open-dialog", "choose files in the plug-in's dialog", {"[LOCATION]"}, OpenByDialog, AddOpenOptions},
        {"save-dialog", "choose where to save in the plug-in's dialog", {"[LOCATION]"}, SaveByDialog, AddSaveOptions},
        {"kept",
         "see and deal with changes that could not be sent",
         {"[ACTION]", "[ID]", "[FILE]"},
         ManageKept,
         AddKeptOptions},
        {"run", "run the commands in a file, one per line", {"FILE"}, RunScript, AddRunOptions},
        {"help", "show this text, or the help of a command", {"[COMMAND]"}, nullptr},
    };
    return commands;
}

void AddOperand(CLI::App& io_command, std::string_view i_operand) {
    const bool is_optional = i_operand.starts_with('[');
    if (is_optional)
        i_operand = i_operand.substr(1, i_operand.size() - 2);
    io_command.add_option(std::string(i_operand))->required(!is_optional);
}

} // namespace

void AddCommands(CLI::App& io_program) {
    for (const Command& command : Commands()) {
        CLI::App* const added = io_program.add_subcommand(command.name, command.summary)->group("Commands");
        added->footer("");
        for (const char* const operand : command.operands)
            AddOperand(*added, operand);
        if (command.add_options != nullptr)
            command.add_options(*added);
    }
}

void RunCommand(Shell& io_shell, const CommandLine& i_line) {
    if (!i_line.Help().empty())
        io_shell.Out().Line(FromUtf8(i_line.Help()));
    else
        std::ranges::find(Commands(), i_line.Name(), &Command::name)->run(io_shell, i_line);
}

} // namespace DevHost
