#pragma once

#include "FileStatus.h"
#include "ItemMetadata.h"
#include "ItemNotes.h"
#include "ServicePath.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DevService {

/// The folder of this machine that one account shows, for reading. Nothing is cached: every call looks at the real file
/// system. Names are found ignoring case, an exact match first, and shown in the composed form (NFC) however they are
/// stored. Thread-safe.
class Storage {
public:
    /// The local place that a path leads to.
    struct Place {
        ServicePath path;           ///< in the stored spelling as far as it exists
        std::filesystem::path real; ///< in the file system
        FileStatus status;          ///< of the full path; missing when any part is
        bool has_file_ancestor = false;

        bool IsFile() const { return status.kind == FileStatus::Kind::File; }
        bool IsFolder() const { return status.kind == FileStatus::Kind::Folder; }
    };

    /// An item below a scanned folder.
    struct Entry {
        std::string path; ///< relative to the folder, "name" or "name/name"
        FileStatus status;
    };

    /// @param i_root an existing folder
    explicit Storage(const std::filesystem::path& i_root);

    const std::filesystem::path& Root() const { return m_root; }
    ItemNotes& Notes() { return m_notes; }

    Place Find(const ServicePath& i_path) const;

    /// Finds an existing file or folder by a path argument: a path, an "id:" or a "rev:".
    /// @param i_member the member of the route's error union that reports lookups
    /// @throws RouteError i_member/malformed_path, i_member/not_found
    Place Require(std::string_view i_argument, std::string_view i_member) const;

    /// The path in a path argument that may name something that doesn't exist yet.
    ServicePath Resolve(std::string_view i_argument, std::string_view i_member) const;

    /// Everything in a folder, in the order of the relative paths' bytes.
    std::vector<Entry> Scan(const std::filesystem::path& i_folder, bool i_is_recursive) const;

    /// How much of the content hash an answer needs.
    enum class HashWanted {
        WhenKnown, ///< listings: hashing every file would take forever
        WhenQuick  ///< answers about one file: computed unless the file is large
    };

    ItemMetadata Describe(const ServicePath& i_path, const FileStatus& i_status) const;
    ItemMetadata Describe(const Place& i_place, HashWanted i_hash) const;

private:
    /// The entry of a folder with that name, ignoring case; the name comes back as it is stored.
    std::optional<std::string> StoredName(const std::filesystem::path& i_folder, const std::string& i_name) const;

    /// Looks through the whole account: ids and revisions are rare, and nothing is cached.
    template <class Predicate>
    std::optional<ServicePath> Search(Predicate i_is_wanted) const;

    void ScanInto(std::vector<Entry>& io_entries, const std::filesystem::path& i_folder, const std::string& i_prefix,
                  bool i_is_recursive) const;

    std::filesystem::path m_root;
    mutable ItemNotes m_notes;
};

} // namespace DevService
