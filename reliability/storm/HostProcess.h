#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/types.h>

namespace Storm {

/// A rule is broken: the storm ends.
class RuleBroken : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// How Windows programs are started here.
struct Programs {
    std::filesystem::path wine;
    std::filesystem::path host;   ///< qorvhost.exe
    std::filesystem::path client; ///< stormclient.exe
    std::filesystem::path trust;  ///< devtrust.exe
};

/// A child process whose standard output and error output are read together, line by line.
class ChildProcess {
public:
    /// @param i_service_address its DEVSERVICE_ADDRESS; @throws std::system_error
    ChildProcess(const std::vector<std::string>& i_command, const std::string& i_service_address);
    /// Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void Send(const std::string& i_line);
    void CloseInput();
    /// The next line without its line ending; none after all output of a process that has ended. @throws RuleBroken if
    /// nothing arrives for too long
    std::optional<std::string> NextLine();
    /// Waits for the end. @returns the exit code; -1 if a signal ended it
    int Wait();
    void Kill();

private:
    pid_t m_id = -1;
    int m_input = -1;
    int m_output = -1;
    int m_end = -1; ///< can be read once the process has ended
    std::string m_ahead;
};

/// The result of a command.
struct Answer {
    int exit_code = 0;
    bool is_lost = false;     ///< the process was killed during the command
    bool was_closing = false; ///< the document was complete, and its close had begun
    std::string json;
    std::vector<std::string> notes; ///< the lines of the error output
    std::string figures;

    bool IsDone() const { return !is_lost && exit_code == 0; }
    /// All the output, in order.
    std::string Text() const;
};

/// A host with the module that runs commands.
class Host {
public:
    virtual ~Host() = default;
    virtual Answer Run(const std::string& i_command) = 0;
    /// Starts a command and kills the process while it runs. @returns false if this host does not support that
    virtual bool RunAndKill(const std::string& i_command, std::chrono::milliseconds i_after) = 0;
    /// Whether it has the client's own commands and stays alive between commands.
    virtual bool IsLasting() const = 0;
    /// Ends it. @throws RuleBroken if it left anything behind
    virtual void End() = 0;
};

/// One process for all commands.
std::unique_ptr<Host> StartLastingHost(const Programs& i_programs, const std::filesystem::path& i_profile,
                                       std::uint16_t i_port);
/// A process for each command: qorvhost, as users run it.
std::unique_ptr<Host> StartSingleHosts(const Programs& i_programs, const std::filesystem::path& i_profile,
                                       std::uint16_t i_port);

/// Converts the path to a Windows program's form, and back.
std::string WindowsPath(const std::filesystem::path& i_path);
std::filesystem::path NativePath(std::string i_path);

} // namespace Storm
