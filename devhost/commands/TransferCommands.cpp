#include "commands/Commands.h"

#include "base/LocalFile.h"
#include "commands/JsonValue.h"
#include "commands/Shell.h"
#include "commands/Transfer.h"
#include "host/RemoteFile.h"
#include "services/NameText.h"

#include <cstdint>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

void RefuseFolder(const fs::path& i_path) {
    std::error_code ignored; // Opening the file reports what is wrong.
    if (fs::is_directory(i_path, ignored))
        throw Failure(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), i_path.wstring() + L" is a folder");
}

/// Whether a local file is unchanged since that many bytes of it were read.
bool IsUnchanged(const fs::path& i_path, std::uint64_t i_write_time, std::uint64_t i_size) {
    try {
        LocalFile file(i_path, LocalFile::Mode::Read);
        return file.WriteTime() == i_write_time && file.Size() == i_size;
    } catch (const Failure&) {
        return false;
    }
}

/// A new file that replaces another once complete, and is removed if it never is, even when the process is ended.
class Replacement {
public:
    explicit Replacement(const fs::path& i_target) : m_target(i_target), m_path(i_target) {
        m_path += L"." + std::to_wstring(GetCurrentProcessId()) + L".part";
        m_file = LocalFile(m_path, LocalFile::Mode::Temporary, i_target);
    }
    ~Replacement() {
        m_file.Close();
        DeleteFileW(m_path.c_str()); // Nothing is left after Finish.
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    LocalFile& File() noexcept { return m_file; }
    void Finish() {
        m_file.Keep();
        m_file.Close();
        MoveLocalFile(m_path, m_target);
    }

private:
    fs::path m_target;
    fs::path m_path;
    LocalFile m_file;
};

/// Where a download goes: into a folder, under its own name, or to the file itself.
fs::path LocalTarget(const fs::path& i_typed, const std::wstring& i_title) {
    std::error_code ignored; // Creating the file reports what is wrong.
    const bool is_folder = !i_typed.has_filename() || fs::is_directory(i_typed, ignored);
    if (!is_folder)
        return i_typed;
    const bool ends_folder = !i_typed.has_filename();
    const bool has_slashes = i_typed.wstring().find(L'\\') == std::wstring::npos;
    return i_typed.wstring() + (ends_folder ? L"" : has_slashes ? L"/" : L"\\") + i_title;
}

void Report(const Output& i_out, const std::wstring& i_sentence, const std::wstring& i_location,
            std::uint64_t i_bytes) {
    if (i_out.IsJson())
        i_out.Json(JsonValue().Begin().Text("location", i_location).Number("bytes", i_bytes).End().Done());
    else
        i_out.Line(i_sentence + L" (" + std::to_wstring(i_bytes) + L" bytes)");
}

} // namespace

void WriteToOutput(Shell& io_shell, const CommandLine& i_line) {
    if (IsTerminal(STD_OUTPUT_HANDLE))
        io_shell.HideProgress();
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    const Operation operation = io_shell.Begin(location);
    const auto file = OpenForReading(io_shell, place.name, operation);
    Transfer([&](void* o_data, ULONG i_size) { return file->Read(o_data, i_size); },
             [&](std::uint64_t, const void* i_data, ULONG i_size) { io_shell.Out().Bytes(i_data, i_size); });
    file->Close();
}

void GetFile(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    const std::wstring path = DisplayPathOf(place.name);
    const Operation operation = io_shell.Begin(location);
    const auto file = OpenForReading(io_shell, place.name, operation);
    const fs::path target = LocalTarget(i_line.Text("FILE"), path.substr(path.find_last_of(L'/') + 1));
    Replacement replacement(target);
    const std::uint64_t bytes = Transfer([&](void* o_data, ULONG i_size) { return file->Read(o_data, i_size); },
                                         [&](std::uint64_t i_position, const void* i_data, ULONG i_size) {
                                             replacement.File().WriteAt(i_position, i_data, i_size);
                                         });
    file->Close();
    replacement.Finish();
    Report(io_shell.Out(), L"Downloaded " + path + L" to " + target.wstring(), LocationOf(place.name), bytes);
}

void PutFile(Shell& io_shell, const CommandLine& i_line) {
    const fs::path source_path = i_line.Text("FILE");
    RefuseFolder(source_path);
    LocalFile source(source_path, LocalFile::Mode::Read);
    const Place place =
        io_shell.Locations().Find(TargetText(i_line.Text("LOCATION"), source_path.filename().wstring()));
    const Operation operation = io_shell.Begin(DisplayPathOf(place.name));
    const std::uint64_t write_time = source.WriteTime();
    std::uint64_t position = 0;
    const auto file = OpenForReplacing(io_shell, place.name, operation);
    file->SetOriginal([&] { return IsUnchanged(source_path, write_time, position); });
    const std::uint64_t bytes = Transfer(
        [&](void* o_data, ULONG i_size) {
            const ULONG read = source.ReadAt(position, o_data, i_size);
            position += read;
            return read;
        },
        [&](std::uint64_t, const void* i_data, ULONG i_size) { file->Write(i_data, i_size); });
    file->Close();
    Report(io_shell.Out(), L"Uploaded " + source_path.wstring() + L" to " + DisplayPathOf(place.name),
           LocationOf(place.name), bytes);
}

} // namespace DevHost
