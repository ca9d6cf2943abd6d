#pragma once

#include "commands/CommandLine.h"
#include "commands/Output.h"
#include "commands/ProgressLine.h"
#include "host/AccountStore.h"
#include "host/Connections.h"
#include "host/PluginHost.h"

#include <memory>
#include <string_view>

namespace DevHost {

// The program's exit codes.
constexpr int exit_ok = 0;
constexpr int exit_failed = 1;
constexpr int exit_usage = 2;         ///< The command line cannot be understood.
constexpr int exit_leak = 3;          ///< The plug-in left something behind.
constexpr int exit_canceled = 4;      ///< By the user, in a window.
constexpr int exit_interrupted = 130; ///< By Ctrl+C.

/// What the commands work with. The plug-in is loaded, and accounts are bound, when a command first needs them.
class Shell {
public:
    /// The cancel flag is the user's Ctrl+C.
    Shell(Options i_options, CancelFlag* i_cancel_flag);

    /// Runs one command and reports its failure. Returns the program's exit code for it.
    int Execute(const CommandLine& i_line);

    /// Unloads the plug-in, if it was loaded, and reports what it left behind. Returns the program's exit code for it.
    int Finish();

    const Output& Out() const noexcept { return m_output; }
    const AccountStore& Accounts() const noexcept { return m_accounts; }
    PluginHost& Plugin();
    Qorv::IAFS_FileSys& FileSystem() { return Plugin().FileSystem(); }
    Connections& Locations();
    /// For a command whose output goes to the terminal itself.
    void HideProgress() { m_progress = ProgressLine(); }
    Operation Begin(std::wstring_view i_subject) const { return {i_subject, m_cancel_flag}; }

    /// Unloads the plug-in. Throws a `Failure` when it cannot, a `LeakFailure` when it left something behind.
    void Unload();

private:
    int ReportEnd(const Failure& i_failure) const;
    void Run(const CommandLine& i_line);

    Options m_options;
    Qorv::ComPtr<CancelFlag> m_cancel_flag;
    Output m_output;
    ProgressLine m_progress;
    AccountStore m_accounts;
    std::unique_ptr<PluginHost> m_plugin;
    std::unique_ptr<Connections> m_connections; ///< Holds objects of the plug-in, so it is destroyed first.
};

} // namespace DevHost
