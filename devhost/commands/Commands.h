#pragma once

#include "commands/CommandLine.h"

namespace DevHost {

class Shell;

/// A file of commands ended at one that failed, and said why already.
struct ScriptStopped {
    std::wstring place; ///< The line.
    int exit_code;
};

/// Runs a command by its name. Throws a `UsageError` for one that is typed wrongly, a `Failure` for one that fails.
void RunCommand(Shell& io_shell, const Arguments& i_command);

// The commands themselves, each with its own arguments, as many as the table of the commands allows.
void ShowInfo(Shell& io_shell, const Arguments& i_arguments);
void LogIn(Shell& io_shell, const Arguments& i_arguments);
void ListAccounts(Shell& io_shell, const Arguments& i_arguments);
void LogOut(Shell& io_shell, const Arguments& i_arguments);
void ListFolder(Shell& io_shell, const Arguments& i_arguments);
void ShowItem(Shell& io_shell, const Arguments& i_arguments);
void WriteToOutput(Shell& io_shell, const Arguments& i_arguments);
void GetFile(Shell& io_shell, const Arguments& i_arguments);
void PutFile(Shell& io_shell, const Arguments& i_arguments);
void MakeFolder(Shell& io_shell, const Arguments& i_arguments);
void RemoveItem(Shell& io_shell, const Arguments& i_arguments);
void MoveItem(Shell& io_shell, const Arguments& i_arguments);
void RenameItem(Shell& io_shell, const Arguments& i_arguments);
void CopyItem(Shell& io_shell, const Arguments& i_arguments);
void OpenByDialog(Shell& io_shell, const Arguments& i_arguments);
void SaveByDialog(Shell& io_shell, const Arguments& i_arguments);
void RunScript(Shell& io_shell, const Arguments& i_arguments);
void ShowHelp(Shell& io_shell, const Arguments& i_arguments);

} // namespace DevHost
