#include "ChildProcess.h"

#include "base/Unicode.h"

#include "qorv/Base.h"

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace Bench {
namespace {

struct CloseHandleOf {
    void operator()(HANDLE i_handle) const noexcept { CloseHandle(i_handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

struct Pipe {
    Handle read_end;
    Handle write_end; ///< Children inherit it.
};

Pipe CreateInheritedPipe() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    if (!CreatePipe(&read_end, &write_end, &inherited, 0))
        throw std::runtime_error("a pipe cannot be made");
    SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);
    return {Handle(read_end), Handle(write_end)};
}

Handle Start(std::wstring i_command_line, const Handle& i_output) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = i_output.get();
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, i_command_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
        throw std::runtime_error("a child process cannot be started");
    CloseHandle(process.hThread);
    return Handle(process.hProcess);
}

std::string ReadToEnd(const Handle& i_file) {
    std::string text;
    std::array<char, 256> piece{};
    DWORD size = 0;
    while (ReadFile(i_file.get(), piece.data(), DWORD{piece.size()}, &size, nullptr) && size != 0)
        text.append(piece.data(), size);
    return text;
}

} // namespace

std::vector<double> RunChild(const std::wstring& i_job, const std::wstring& i_argument) {
    std::array<wchar_t, 1024> program{};
    GetModuleFileNameW(nullptr, program.data(), DWORD{program.size()});
    Pipe pipe = CreateInheritedPipe();
    const Handle process = Start(L"\"" + std::wstring(program.data()) + L"\" " + DevHost::FromUtf8(child_option) +
                                     L" " + i_job + L" \"" + i_argument + L"\"",
                                 pipe.write_end);
    pipe.write_end.reset(); // Otherwise the pipe would never end.
    std::istringstream text(ReadToEnd(pipe.read_end));
    DWORD exit_code = 1;
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &exit_code);
    std::vector<double> numbers;
    for (double number = 0; text >> number;)
        numbers.push_back(number);
    if (exit_code != 0 || numbers.empty())
        throw std::runtime_error("a child process failed");
    return numbers;
}

void AnswerParent(const std::vector<double>& i_numbers) {
    for (const double number : i_numbers)
        std::printf("%.9g ", number);
}

} // namespace Bench
