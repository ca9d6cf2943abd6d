#pragma once

#include "commands/CommandLine.h"

namespace DevHost {

class Shell;

/// A command file stopped at a failed command, which has already been reported.
struct ScriptStopped {
    std::wstring place; ///< The line.
    int exit_code;
};

/// Tells the parser which commands there are and what they take.
void AddCommands(CLI::App& io_program);

/// Runs a command, or shows its help. Throws a `Failure` when it fails.
void RunCommand(Shell& io_shell, const CommandLine& i_line);

// The commands themselves.
void ShowInfo(Shell& io_shell, const CommandLine& i_line);
void LogIn(Shell& io_shell, const CommandLine& i_line);
void ListAccounts(Shell& io_shell, const CommandLine& i_line);
void LogOut(Shell& io_shell, const CommandLine& i_line);
void ListFolder(Shell& io_shell, const CommandLine& i_line);
void ShowItem(Shell& io_shell, const CommandLine& i_line);
void WriteToOutput(Shell& io_shell, const CommandLine& i_line);
void GetFile(Shell& io_shell, const CommandLine& i_line);
void PutFile(Shell& io_shell, const CommandLine& i_line);
void MakeFolder(Shell& io_shell, const CommandLine& i_line);
void RemoveItem(Shell& io_shell, const CommandLine& i_line);
void MoveItem(Shell& io_shell, const CommandLine& i_line);
void RenameItem(Shell& io_shell, const CommandLine& i_line);
void CopyItem(Shell& io_shell, const CommandLine& i_line);
void OpenByDialog(Shell& io_shell, const CommandLine& i_line);
void SaveByDialog(Shell& io_shell, const CommandLine& i_line);
void ManageKept(Shell& io_shell, const CommandLine& i_line);
void RunScript(Shell& io_shell, const CommandLine& i_line);

} // namespace DevHost
