#pragma once

#include "base/LocalFile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace DevHost {

/// Changed bytes that could not be sent, and whose they are.
struct KeptFile {
    std::filesystem::path path;
    std::wstring location;
    std::uint64_t size = 0;       ///< Bytes.
    std::uint64_t write_time = 0; ///< A file time (UTC).

    /// How a person names it: the beginning of its file's name.
    std::wstring Id() const;
};

/// What a cache entry has on disk, in the cache's folder: the file with its bytes and, from before the first change
/// until the bytes are at the service, a note that says whose they are. So a crash loses no changed byte.
///
/// The bytes stay open and locked while an entry lives: no other process takes the entry for an abandoned one.
class EntryFiles {
public:
    /// New files for a location, without bytes and without a note.
    static EntryFiles Create(const std::filesystem::path& i_folder, const std::wstring& i_location);

    /// The newest changed bytes of a location that earlier runs left, if there are any that no other process has.
    static std::optional<EntryFiles> FindAbandoned(const std::filesystem::path& i_folder,
                                                   const std::wstring& i_location);

    /// Everything that is kept in a folder, by this run or others, the oldest first.
    static std::vector<KeptFile> ListKept(const std::filesystem::path& i_folder);

    /// Takes over what an earlier run left. Throws a `Failure` when another process has it.
    static EntryFiles Adopt(const std::filesystem::path& i_bytes);

    /// Removes what ended runs left behind and nobody needs: bytes without a note, which are at the service.
    static void CleanUp(const std::filesystem::path& i_folder);

    LocalFile& Bytes() noexcept { return m_bytes; }
    const std::filesystem::path& BytesPath() const noexcept { return m_bytes.Path(); }

    void WriteNote(const std::wstring& i_location) const;
    void RemoveNote() const;

    /// Ends the entry and its files.
    void Remove();

    /// Ends the entry but leaves its bytes as a plain file, which no later run touches; returns where.
    std::filesystem::path MoveToReplaced();

    /// Ends the entry and leaves both files for a later run.
    void Leave() { m_bytes.Close(); }

private:
    explicit EntryFiles(LocalFile i_bytes) : m_bytes(std::move(i_bytes)) {}
    std::filesystem::path NotePath() const;

    LocalFile m_bytes;
};

} // namespace DevHost
