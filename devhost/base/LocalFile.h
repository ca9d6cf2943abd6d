#pragma once

#include "qorv/Base.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace DevHost {

/// An open local file. Every failure throws a `Failure` that names the file.
class LocalFile {
public:
    enum class Mode {
        Read,      ///< An existing file; others may read, write and delete it.
        ReadWrite, ///< An existing file; nobody else may write or delete it while it is open.
        CreateNew, ///< The same for a file that must not exist yet.
        Temporary, ///< The same, and the file goes with its handle, however the process ends, until `Keep`.
    };

    LocalFile() noexcept = default;
    /// Failures name `i_shown_as`, if it isn't empty: a temporary name tells the user nothing.
    LocalFile(std::filesystem::path i_path, Mode i_mode, std::filesystem::path i_shown_as = {});
    LocalFile(LocalFile&& io_other) noexcept;
    LocalFile& operator=(LocalFile&& io_other) noexcept;
    ~LocalFile();

    bool IsOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
    void Close() noexcept;

    /// Reads up to `i_size` bytes from a position; fewer only at the end of the file.
    ULONG ReadAt(std::uint64_t i_position, void* o_data, ULONG i_size);
    void WriteAt(std::uint64_t i_position, const void* i_data, ULONG i_size);
    std::uint64_t Size();
    /// When its bytes were last written, in units of 100 ns; only for comparison.
    std::uint64_t WriteTime();
    void SetSize(std::uint64_t i_size);
    /// A temporary file stays from now on.
    void Keep();
    /// Flushes everything written to the disk.
    void Flush();

    const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    [[noreturn]] void Throw(std::wstring_view i_verb) const;

    std::filesystem::path m_path;
    std::filesystem::path m_shown_as;
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

/// Moves a file; replaces an existing one.
void MoveLocalFile(const std::filesystem::path& i_from, const std::filesystem::path& i_to);

std::string ReadWholeFile(const std::filesystem::path& i_path);

/// Writes a small file atomically: readers find either the old text or the new one. Creates missing folders.
void WriteFileAtomically(const std::filesystem::path& i_path, std::string_view i_bytes);

} // namespace DevHost
