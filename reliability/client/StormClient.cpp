// stormclient OPTIONS: the host with the module that ships, for the storm. It takes the host's options, reads commands
// from its standard input, one per line, and writes "#exit N" after each command's output. Its own commands do what an
// editor does:
//
//     save FILE LOCATION          replaces a document with the bytes of a file, without keeping a copy
//     edit LOCATION SEEN TEXT     opens a document, writes its content to the file SEEN, appends the text, saves
//     figures                     what the process uses: "#figures HANDLES GDI USER BYTES"
//
// "#closing" comes before the output of the close. From then on the host is responsible for the bytes.

#include "base/LocalFile.h"
#include "base/Unicode.h"
#include "commands/CommandLine.h"
#include "commands/Shell.h"
#include "commands/Transfer.h"
#include "wine/WineNetwork.h"

#include <psapi.h>

#include <optional>

namespace {

using namespace DevHost;

/// The next line of the standard input; none at its end.
std::optional<std::wstring> NextLine() {
    std::string line;
    for (;;) {
        char letter = 0;
        DWORD read = 0;
        if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), &letter, 1, &read, nullptr) || read == 0)
            return std::nullopt;
        if (letter == '\n')
            return FromUtf8(line);
        line += letter;
    }
}

void CloseDocument(Shell& io_shell, RemoteFile& io_file) {
    io_shell.Out().Line(L"#closing");
    io_file.Close();
}

void Save(Shell& io_shell, const Arguments& i_arguments) {
    LocalFile source(i_arguments.at(1), LocalFile::Mode::Read);
    const Place place = io_shell.Locations().Find(i_arguments.at(2));
    const Operation operation = io_shell.Begin(i_arguments.at(2));
    const auto file = OpenForReplacing(io_shell, place.name, operation);
    std::uint64_t position = 0;
    Transfer(
        [&](void* o_data, ULONG i_size) {
            const ULONG read = source.ReadAt(position, o_data, i_size);
            position += read;
            return read;
        },
        [&](std::uint64_t, const void* i_data, ULONG i_size) { file->Write(i_data, i_size); });
    CloseDocument(io_shell, *file);
}

void Edit(Shell& io_shell, const Arguments& i_arguments) {
    const Place place = io_shell.Locations().Find(i_arguments.at(1));
    const Operation operation = io_shell.Begin(i_arguments.at(1));
    RemoteFile file(io_shell.FileSystem(), io_shell.Plugin().Cache(), place.name,
                    Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_OpenExisting, operation);
    LocalFile seen(i_arguments.at(2), LocalFile::Mode::CreateNew);
    Transfer(
        [&](void* o_data, ULONG i_size) { return file.Read(o_data, i_size); },
        [&](std::uint64_t i_position, const void* i_data, ULONG i_size) { seen.WriteAt(i_position, i_data, i_size); });
    const std::string text = ToUtf8(i_arguments.at(3));
    file.Write(text.data(), static_cast<ULONG>(text.size()));
    CloseDocument(io_shell, file);
}

void ShowFigures(Shell& io_shell) {
    const HANDLE process = GetCurrentProcess();
    DWORD handles = 0;
    GetProcessHandleCount(process, &handles);
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(process, &memory, sizeof memory);
    io_shell.Out().Line(L"#figures " + std::to_wstring(handles) + L" " +
                        std::to_wstring(GetGuiResources(process, GR_GDIOBJECTS)) + L" " +
                        std::to_wstring(GetGuiResources(process, GR_USEROBJECTS)) + L" " +
                        std::to_wstring(memory.WorkingSetSize));
}

int Execute(Shell& io_shell, const Arguments& i_command) {
    if (i_command.front() != L"save" && i_command.front() != L"edit" && i_command.front() != L"figures")
        try {
            return io_shell.Execute(CommandLine(i_command, CommandLine::Origin::Script));
        } catch (const UsageError& error) {
            io_shell.Out().Note(FromUtf8(error.what()));
            return exit_usage;
        }
    try {
        if (i_command.front() == L"save")
            Save(io_shell, i_command);
        else if (i_command.front() == L"edit")
            Edit(io_shell, i_command);
        else
            ShowFigures(io_shell);
        return exit_ok;
    } catch (const Failure& failure) {
        io_shell.Out().Error(failure);
    } catch (const std::exception& error) {
        io_shell.Out().Error({E_FAIL, FromUtf8(error.what())});
    }
    return exit_failed;
}

int Run(const CommandLine& i_line) {
    RedirectWinInet();
    Shell shell(i_line.ProgramOptions(), Qorv::Create<CancelFlag>());
    shell.Out().Line(L"#ready");
    while (const auto line = NextLine())
        if (const Arguments command = SplitLine(*line); !command.empty())
            shell.Out().Line(L"#exit " + std::to_wstring(Execute(shell, command)));
    return shell.Finish();
}

} // namespace

int wmain(int i_count, wchar_t** i_arguments) {
    OleInitialize(nullptr);
    int result = exit_failed;
    try {
        Arguments words(i_arguments + 1, i_arguments + i_count);
        words.insert(words.end(), {L"run", L"-"}); // What it does with its standard input.
        result = Run(CommandLine(words));
    } catch (const std::exception& error) {
        Output(false).Note(FromUtf8(error.what()));
    }
    OleUninitialize();
    return result;
}
