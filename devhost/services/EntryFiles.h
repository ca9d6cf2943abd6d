#pragma once

#include "base/LocalFile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace DevHost {

/// Changed bytes that could not be sent, and their location.
struct KeptFile {
    std::filesystem::path path;
    std::wstring location;
    std::uint64_t size = 0;       ///< Bytes.
    std::uint64_t write_time = 0; ///< A file time (UTC).

    /// Its id for people: the start of its file's name.
    std::wstring Id() const;
};

/// A cache entry's files in the cache's folder: one with its bytes and, from before the first change until the service
/// has the bytes, a note that says whose they are. So a crash loses no changed byte.
///
/// The bytes' file stays open and locked while the entry exists, so no other process takes the entry for an abandoned
/// one.
class EntryFiles {
public:
    /// New files for a location, without bytes and without a note.
    static EntryFiles Create(const std::filesystem::path& i_folder, const std::wstring& i_location);

    /// The newest changed bytes of a location left by earlier runs, if no other process has them; else nothing.
    static std::optional<EntryFiles> FindAbandoned(const std::filesystem::path& i_folder,
                                                   const std::wstring& i_location);

    /// Everything kept in a folder, by this run or others, oldest first.
    static std::vector<KeptFile> ListKept(const std::filesystem::path& i_folder);

    /// Takes over what an earlier run left. Throws a `Failure` if another process has it.
    static EntryFiles Adopt(const std::filesystem::path& i_bytes);

    /// Removes the unneeded files of ended runs: bytes without a note, which the service has.
    static void CleanUp(const std::filesystem::path& i_folder);

    LocalFile& Bytes() noexcept { return m_bytes; }
    const std::filesystem::path& BytesPath() const noexcept { return m_bytes.Path(); }

    void WriteNote(const std::wstring& i_location) const;
    void RemoveNote() const;

    /// Ends the entry and its files.
    void Remove();

    /// Ends the entry but leaves its bytes as a plain file, which no later run touches; returns its path.
    std::filesystem::path MoveToReplaced();

    /// Ends the entry and leaves both files for a later run.
    void Leave() { m_bytes.Close(); }

private:
    explicit EntryFiles(LocalFile i_bytes) : m_bytes(std::move(i_bytes)) {}
    std::filesystem::path NotePath() const;

    LocalFile m_bytes;
};

} // namespace DevHost
