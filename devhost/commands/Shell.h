#pragma once

#include "commands/CommandLine.h"
#include "commands/Output.h"
#include "host/AccountStore.h"
#include "host/Connections.h"
#include "host/PluginHost.h"

#include <memory>
#include <string_view>

namespace DevHost {

// The program's exit codes.
constexpr int exit_ok = 0;
constexpr int exit_failed = 1;
constexpr int exit_usage = 2; ///< The command line cannot be understood.
constexpr int exit_leak = 3;  ///< The plug-in left something behind.

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
    Operation Begin(std::wstring_view i_subject) const { return {i_subject, m_cancel_flag}; }

    /// Unloads the plug-in. Throws a `Failure` when it cannot, a `LeakFailure` when it left something behind.
    void Unload();

private:
    void SetTraceSwitch() const;

    Options m_options;
    Qorv::ComPtr<CancelFlag> m_cancel_flag;
    Output m_output;
    AccountStore m_accounts;
    std::unique_ptr<PluginHost> m_plugin;
    std::unique_ptr<Connections> m_connections; ///< Holds objects of the plug-in, so it is destroyed first.
};

} // namespace DevHost
