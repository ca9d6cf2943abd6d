#pragma once

#include "Storage.h"

#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace DevService {

/// How listings are cut into pages; set by tests.
struct Paging {
    std::size_t page_size = 500;
    bool has_empty_pages = false; ///< every second page (the 2nd, the 4th...) is empty with has_more true
};

/// The listings of one account. A cursor points into a snapshot taken when the listing began, so pages need no further
/// look at the disk; after the last page the same cursor reports later changes. Thread-safe.
class Listings {
public:
    explicit Listings(Storage& io_storage) : m_storage(io_storage) {}

    /// The reply's JSON: the first page of a folder's listing.
    /// @param i_limit entries a page; 0: as the paging says
    std::string First(std::string_view i_path, bool i_is_recursive, std::size_t i_limit, const Paging& i_paging);

    /// A cursor that reports only later changes.
    std::string LatestCursor(std::string_view i_path, bool i_is_recursive);

    /// The next page. @throws BadArguments for what isn't a cursor, RouteError reset for one that was dropped
    std::string Next(std::string_view i_cursor, const Paging& i_paging);

private:
    using Entries = std::vector<Storage::Entry>;

    /// A snapshot with a key. Immutable, hence shared without a lock.
    struct Snapshot {
        std::string key;
        ServicePath folder;
        bool is_recursive = false;
        std::size_t limit = 0;
        std::shared_ptr<const Entries> told; ///< what the pages hold; a missing item stands for a deleted one
        std::shared_ptr<const Entries> state;
    };
    using SnapshotPtr = std::shared_ptr<const Snapshot>;

    /// Where the next page begins.
    struct Position {
        std::size_t entry = 0;
        std::size_t page = 0;
    };

    SnapshotPtr Take(const Storage::Place& i_folder, bool i_is_recursive, std::size_t i_limit);
    SnapshotPtr TakeChanges(const SnapshotPtr& i_before);
    Storage::Place RequireFolder(std::string_view i_path) const;
    SnapshotPtr Keep(Snapshot i_snapshot);
    SnapshotPtr FindKey(std::string_view i_key);
    std::string Page(const Snapshot& i_snapshot, Position i_position, const Paging& i_paging) const;
    static std::string CursorText(const Snapshot& i_snapshot, Position i_position);

    Storage& m_storage;
    std::mutex m_mutex;
    std::list<SnapshotPtr> m_snapshots; ///< the newest first
};

} // namespace DevService
