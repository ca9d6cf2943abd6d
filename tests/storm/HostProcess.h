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

/// A rule does not hold: the end of the storm.
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

/// A child process whose output and error output come together, line by line.
class ChildProcess {
public:
    /// @param i_service_address what it has as DEVSERVICE_ADDRESS; @throws std::system_error
    ChildProcess(const std::vector<std::string>& i_command, const std::string& i_service_address);
    /// Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void Send(const std::string& i_line);
    void CloseInput();
    /// The next line without its end, none at the end of the output. @throws RuleBroken when nothing comes for too long
    std::optional<std::string> NextLine();
    /// Waits for the end. @returns the exit code; -1 when a signal ended it
    int Wait();
    void Kill();

private:
    pid_t m_id = -1;
    int m_input = -1;
    int m_output = -1;
    std::string m_ahead;
};

/// What a command answered.
struct Answer {
    int exit_code = 0;
    bool is_lost = false;     ///< the process was killed meanwhile
    bool was_closing = false; ///< the document was whole, and its close had begun
    std::string json;
    std::vector<std::string> notes; ///< the lines of the error output
    std::string figures;

    bool IsDone() const { return !is_lost && exit_code == 0; }
    /// All that was said, as it came.
    std::string Text() const;
};

/// A host with the module, which runs commands.
class Host {
public:
    virtual ~Host() = default;
    virtual Answer Run(const std::string& i_command) = 0;
    /// Runs a command and ends the process somewhere within. @returns false when this host does not do such things
    virtual bool RunAndKill(const std::string& i_command, std::chrono::milliseconds i_after) = 0;
    /// Whether it knows the client's own commands and lives from command to command.
    virtual bool IsLasting() const = 0;
    /// Ends it; @throws RuleBroken when it left something behind
    virtual void End() = 0;
};

/// One process for all commands.
std::unique_ptr<Host> StartLastingHost(const Programs& i_programs, const std::filesystem::path& i_profile,
                                       std::uint16_t i_port);
/// A process for each command: qorvhost, as a person uses it.
std::unique_ptr<Host> StartSingleHosts(const Programs& i_programs, const std::filesystem::path& i_profile,
                                       std::uint16_t i_port);

/// The path as a Windows program reads it, and back.
std::string WindowsPath(const std::filesystem::path& i_path);
std::filesystem::path NativePath(std::string i_path);

} // namespace Storm
