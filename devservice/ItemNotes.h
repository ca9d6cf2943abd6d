#pragma once

#include "FileStatus.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace DevService {

/// What the service knows about items beyond the file system, kept in memory while it runs: ids, the times that clients
/// gave, and content hashes once computed. Thread-safe.
class ItemNotes {
public:
    /// Facts about one state of a file; they lapse when it changes.
    struct Content {
        std::optional<std::int64_t> client_modified; ///< seconds since 1970, as the client gave it
        std::string hash;                            ///< empty: not known
    };

    /// The item's id, "id:" and 22 characters; it stays through renaming, moving and overwriting.
    std::string Id(const FileStatus& i_status);

    Content ContentOf(const FileStatus& i_status);
    void SetContent(const FileStatus& i_status, Content i_content);

    /// Makes a file the successor of the one it replaced: it takes over the id.
    void Replace(const FileStatus& i_old, const FileStatus& i_new);

    void Forget(const FileStatus& i_status);

private:
    struct Note {
        std::string id;
        FileStatus state; ///< of which `content` holds
        Content content;
    };
    struct Key {
        std::uint64_t device;
        std::uint64_t number;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& i_key) const { return i_key.number * 1'000'003u + i_key.device; }
    };

    /// The item's note, created if there is none. The mutex is held.
    Note& NoteOf(const FileStatus& i_status);

    std::mutex m_mutex;
    std::unordered_map<Key, Note, KeyHash> m_notes;
};

} // namespace DevService
