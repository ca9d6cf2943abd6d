#pragma once

#include "base/LocalFile.h"

#include <filesystem>
#include <optional>
#include <string>

namespace DevHost {

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
