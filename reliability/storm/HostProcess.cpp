#include "HostProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Storm {

namespace fs = std::filesystem;

namespace {

/// Longer than any reply is delayed, and shorter than anybody would wait.
constexpr int patience_ms = 45'000;

void Check(bool i_is_good, const char* i_what) {
    if (!i_is_good)
        throw std::system_error(errno, std::generic_category(), i_what);
}

struct Pipe {
    std::array<int, 2> ends{-1, -1};
    Pipe() { Check(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe"); }
};

/// The environment with one variable added or changed.
std::vector<std::string> Environment(const std::string& i_service_address) {
    constexpr std::string_view name = "DEVSERVICE_ADDRESS=";
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable)
        if (!std::string_view(*variable).starts_with(name))
            variables.emplace_back(*variable);
    variables.push_back(std::string(name) + i_service_address);
    return variables;
}

std::vector<char*> Pointers(std::vector<std::string>& io_texts) {
    std::vector<char*> pointers;
    pointers.reserve(io_texts.size() + 1);
    for (std::string& text : io_texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> Options(const fs::path& i_wine, const fs::path& i_program, const fs::path& i_profile) {
    return {i_wine, i_program, "--json", "--profile", WindowsPath(i_profile)};
}

/// The client is in a different folder from the host, which has the module beside it.
std::vector<std::string> ClientCommand(const Programs& i_programs, const fs::path& i_profile) {
    std::vector<std::string> command = Options(i_programs.wine, i_programs.client, i_profile);
    command.insert(command.end(), {"--module", WindowsPath(i_programs.host.parent_path() / "Dropbox.qvp")});
    return command;
}

std::string Address(std::uint16_t i_port) {
    return "127.0.0.1:" + std::to_string(i_port);
}

void AddLine(Answer& io_answer, const std::string& i_line) {
    constexpr std::string_view figures = "#figures ";
    if (i_line == "#closing")
        io_answer.was_closing = true;
    else if (i_line.starts_with(figures))
        io_answer.figures = i_line.substr(figures.size());
    else if (i_line.starts_with('{') || i_line.starts_with('['))
        io_answer.json = i_line;
    else
        io_answer.notes.push_back(i_line);
}

class LastingHost final : public Host {
public:
    LastingHost(const Programs& i_programs, const fs::path& i_profile, std::uint16_t i_port)
        : m_process(ClientCommand(i_programs, i_profile), Address(i_port)) {
        const auto line = m_process.NextLine();
        if (line != "#ready")
            throw RuleBroken("the client does not start: " + line.value_or("(no output)"));
    }

    Answer Run(const std::string& i_command) override {
        constexpr std::string_view exit = "#exit ";
        m_process.Send(i_command);
        Answer answer;
        while (const auto line = m_process.NextLine()) {
            if (line->starts_with(exit)) {
                answer.exit_code = std::stoi(line->substr(exit.size()));
                return answer;
            }
            AddLine(answer, *line);
        }
        throw RuleBroken("the client crashed:\n" + answer.Text());
    }

    bool RunAndKill(const std::string& i_command, std::chrono::milliseconds i_after) override {
        m_process.Send(i_command);
        std::this_thread::sleep_for(i_after);
        m_process.Kill();
        return true;
    }

    bool IsLasting() const override { return true; }

    void End() override {
        m_process.CloseInput();
        std::string said;
        while (const auto line = m_process.NextLine())
            said += *line + "\n";
        if (const int code = m_process.Wait(); code != 0)
            throw RuleBroken("the client ended with " + std::to_string(code) + ":\n" + said);
    }

private:
    ChildProcess m_process;
};

class SingleHosts final : public Host {
public:
    SingleHosts(const Programs& i_programs, fs::path i_profile, std::uint16_t i_port)
        : m_programs(i_programs), m_profile(std::move(i_profile)), m_port(i_port) {}

    Answer Run(const std::string& i_command) override {
        std::vector<std::string> command = Options(m_programs.wine, m_programs.host, m_profile);
        for (std::string& word : Words(i_command))
            command.push_back(std::move(word));
        ChildProcess process(command, Address(m_port));
        process.CloseInput();
        Answer answer;
        while (const auto line = process.NextLine())
            AddLine(answer, *line);
        answer.exit_code = process.Wait();
        return answer;
    }

    bool RunAndKill(const std::string&, std::chrono::milliseconds) override { return false; }
    bool IsLasting() const override { return false; }
    void End() override {}

private:
    static std::vector<std::string> Words(const std::string& i_command) {
        std::vector<std::string> words(1);
        bool is_quoted = false;
        for (const char letter : i_command) {
            if (letter == '"')
                is_quoted = !is_quoted;
            else if (letter == ' ' && !is_quoted)
                words.emplace_back();
            else
                words.back() += letter;
        }
        return words;
    }

    Programs m_programs;
    fs::path m_profile;
    std::uint16_t m_port;
};

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& i_command, const std::string& i_service_address) {
    const Pipe input;
    const Pipe output;
    std::vector<std::string> command = i_command;
    std::vector<std::string> environment = Environment(i_service_address);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input.ends[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output.ends[1], STDERR_FILENO);
    // An inherited socket would stay open after the proxy closes it.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    const int error = posix_spawn(&m_id, command.front().c_str(), &actions, nullptr, Pointers(command).data(),
                                  Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    close(input.ends[0]);
    close(output.ends[1]);
    m_input = input.ends[1];
    m_output = output.ends[0];
    if (error != 0)
        throw std::system_error(error, std::generic_category(), command.front());
    m_end = static_cast<int>(syscall(SYS_pidfd_open, m_id, 0)); // glibc 2.36 declares its function without C linkage.
    Check(m_end >= 0, "pidfd_open");
}

ChildProcess::~ChildProcess() {
    Kill();
    CloseInput();
    close(m_output);
    close(m_end);
}

void ChildProcess::Send(const std::string& i_line) {
    const std::string bytes = i_line + "\n"; // Far less than a pipe holds.
    if (write(m_input, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw RuleBroken("the client takes no more commands: it has crashed");
}

void ChildProcess::CloseInput() {
    if (m_input >= 0)
        close(std::exchange(m_input, -1));
}

std::optional<std::string> ChildProcess::NextLine() {
    for (;;) {
        if (const std::size_t end = m_ahead.find('\n'); end != m_ahead.npos) {
            std::string line = m_ahead.substr(0, end);
            m_ahead.erase(0, end + 1);
            return line;
        }
        std::array<pollfd, 2> wanted{{{m_output, POLLIN, 0}, {m_end, POLLIN, 0}}};
        if (poll(wanted.data(), wanted.size(), patience_ms) == 0)
            throw RuleBroken("the client hangs; it said so far: " + m_ahead);
        // What Wine starts beside the first program, its desktop, has inherited the output and keeps it open.
        if (wanted.front().revents == 0)
            return std::nullopt;
        std::array<char, 16'384> piece{};
        const ssize_t size = read(m_output, piece.data(), piece.size());
        if (size <= 0)
            return std::nullopt;
        m_ahead.append(piece.data(), static_cast<std::size_t>(size));
    }
}

int ChildProcess::Wait() {
    int status = 0;
    waitpid(std::exchange(m_id, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::Kill() {
    if (m_id < 0)
        return;
    kill(m_id, SIGKILL);
    Wait();
}

std::string Answer::Text() const {
    std::string text = "  exit code " + std::to_string(exit_code) + "\n";
    if (!json.empty())
        text += "  " + json.substr(0, 2'000) + "\n";
    for (const std::string& note : notes)
        text += "  " + note.substr(0, 2'000) + "\n";
    return text;
}

std::unique_ptr<Host> StartLastingHost(const Programs& i_programs, const fs::path& i_profile, std::uint16_t i_port) {
    return std::make_unique<LastingHost>(i_programs, i_profile, i_port);
}

std::unique_ptr<Host> StartSingleHosts(const Programs& i_programs, const fs::path& i_profile, std::uint16_t i_port) {
    return std::make_unique<SingleHosts>(i_programs, i_profile, i_port);
}

std::string WindowsPath(const fs::path& i_path) {
    std::string path = "Z:" + i_path.string();
    std::ranges::replace(path, '/', '\\');
    return path;
}

fs::path NativePath(std::string i_path) {
    std::ranges::replace(i_path, '\\', '/');
    return i_path.substr(i_path.starts_with("Z:") || i_path.starts_with("z:") ? 2 : 0);
}

} // namespace Storm
