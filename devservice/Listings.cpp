#include "Listings.h"

#include "Encoding.h"
#include "Refusal.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

namespace DevService {
namespace {

/// A cursor is this prefix, a snapshot's key and two numbers of eight hexadecimal digits.
constexpr std::string_view cursor_prefix = "AAF";
constexpr std::size_t key_bytes = 33;
constexpr std::size_t key_size = 44; ///< of that many bytes in Base64
constexpr std::size_t number_size = 8;

/// Older snapshots are dropped when all together have more entries than this (about 150 bytes each).
constexpr std::size_t max_kept_entries = 1'000'000;

std::optional<std::size_t> ParseNumber(std::string_view i_digits) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(i_digits.data(), i_digits.data() + i_digits.size(), number, 16);
    if (error != std::errc() || end != i_digits.data() + i_digits.size())
        return std::nullopt;
    return number;
}

/// The differences between two sorted states: new and changed entries as they are, removed ones as missing.
std::vector<Storage::Entry> Changes(const std::vector<Storage::Entry>& i_before,
                                    const std::vector<Storage::Entry>& i_now) {
    std::vector<Storage::Entry> changes;
    auto before = i_before.begin();
    for (const Storage::Entry& entry : i_now) {
        for (; before != i_before.end() && before->path < entry.path; ++before)
            changes.push_back({before->path, FileStatus()});
        const bool is_known = before != i_before.end() && before->path == entry.path;
        const bool is_folder = entry.status.kind == FileStatus::Kind::Folder;
        // A folder has no revision: only another folder of the same name counts as a change.
        const bool is_same = is_known && (is_folder ? before->status.number == entry.status.number &&
                                                          before->status.kind == entry.status.kind
                                                    : before->status == entry.status);
        if (!is_same)
            changes.push_back(entry);
        if (is_known)
            ++before;
    }
    for (; before != i_before.end(); ++before)
        changes.push_back({before->path, FileStatus()});
    return changes;
}

} // namespace

std::string Listings::First(std::string_view i_path, bool i_is_recursive, std::size_t i_limit, const Paging& i_paging) {
    const SnapshotPtr snapshot = Take(RequireFolder(i_path), i_is_recursive, i_limit);
    return Page(*snapshot, {}, i_paging);
}

std::string Listings::LatestCursor(std::string_view i_path, bool i_is_recursive) {
    const SnapshotPtr snapshot = Take(RequireFolder(i_path), i_is_recursive, 0);
    return CursorText(*snapshot, {snapshot->told->size(), 0});
}

std::string Listings::Next(std::string_view i_cursor, const Paging& i_paging) {
    const BadArguments bad_cursor("Invalid \"cursor\" parameter");
    if (i_cursor.size() != cursor_prefix.size() + key_size + 2 * number_size || !i_cursor.starts_with(cursor_prefix))
        throw bad_cursor;
    i_cursor.remove_prefix(cursor_prefix.size());
    const auto entry = ParseNumber(i_cursor.substr(key_size, number_size));
    const auto page = ParseNumber(i_cursor.substr(key_size + number_size));
    if (!entry || !page)
        throw bad_cursor;
    const SnapshotPtr snapshot = FindKey(i_cursor.substr(0, key_size));
    if (!snapshot)
        throw RouteError({"reset"});
    if (*entry < snapshot->told->size())
        return Page(*snapshot, {*entry, *page}, i_paging);
    return Page(*TakeChanges(snapshot), {}, i_paging);
}

Storage::Place Listings::RequireFolder(std::string_view i_path) const {
    Storage::Place folder = m_storage.Require(i_path, "path");
    if (!folder.IsFolder())
        throw RouteError({"path", "not_folder"});
    return folder;
}

Listings::SnapshotPtr Listings::Take(const Storage::Place& i_folder, bool i_is_recursive, std::size_t i_limit) {
    const auto state = std::make_shared<const Entries>(m_storage.Scan(i_folder.real, i_is_recursive));
    return Keep({{}, i_folder.path, i_is_recursive, i_limit, state, state});
}

Listings::SnapshotPtr Listings::TakeChanges(const SnapshotPtr& i_before) {
    const Storage::Place folder = RequireFolder(i_before->folder.Text());
    auto state = std::make_shared<const Entries>(m_storage.Scan(folder.real, i_before->is_recursive));
    auto told = std::make_shared<const Entries>(Changes(*i_before->state, *state));
    return Keep({{}, folder.path, i_before->is_recursive, i_before->limit, std::move(told), std::move(state)});
}

Listings::SnapshotPtr Listings::Keep(Snapshot i_snapshot) {
    i_snapshot.key = RandomText(key_bytes);
    SnapshotPtr kept = std::make_shared<const Snapshot>(std::move(i_snapshot));
    const std::lock_guard lock(m_mutex);
    m_snapshots.push_front(kept);
    std::size_t entry_count = 0;
    const auto first_dropped = std::ranges::find_if(m_snapshots, [&](const SnapshotPtr& i_kept) {
        entry_count += i_kept->state->size() + 1;
        return entry_count > max_kept_entries && i_kept != kept;
    });
    m_snapshots.erase(first_dropped, m_snapshots.end());
    return kept;
}

Listings::SnapshotPtr Listings::FindKey(std::string_view i_key) {
    const std::lock_guard lock(m_mutex);
    const auto found =
        std::ranges::find_if(m_snapshots, [&](const SnapshotPtr& i_kept) { return i_kept->key == i_key; });
    return found == m_snapshots.end() ? nullptr : *found;
}

std::string Listings::Page(const Snapshot& i_snapshot, Position i_position, const Paging& i_paging) const {
    const Entries& told = *i_snapshot.told;
    const bool is_empty_page = i_paging.has_empty_pages && i_position.page % 2 == 1;
    const std::size_t page_size = is_empty_page ? 0 : i_snapshot.limit ? i_snapshot.limit : i_paging.page_size;
    const std::size_t end = std::min(told.size(), i_position.entry + page_size);

    constexpr std::size_t bytes_an_entry = 400;
    rapidjson::StringBuffer buffer(nullptr, (end - i_position.entry) * bytes_an_entry + 256);
    JsonWriter json(buffer);
    json.StartObject();
    WriteKey(json, "entries");
    json.StartArray();
    for (std::size_t i = i_position.entry; i < end; ++i) {
        const Storage::Entry& entry = told[i];
        ServicePath path = i_snapshot.folder;
        path.names.push_back(entry.path); // the names below the folder as one: only the text is needed
        ItemMetadata metadata = m_storage.Describe(path, entry.status);
        metadata.name = entry.path.substr(entry.path.rfind('/') + 1);
        if (!entry.status.Exists())
            metadata.kind = ItemMetadata::Kind::Deleted;
        WriteMetadata(json, metadata, Tagged::Yes);
    }
    json.EndArray();
    WriteMember(json, "cursor", CursorText(i_snapshot, {end, i_position.page + 1}));
    WriteKey(json, "has_more");
    json.Bool(end < told.size());
    json.EndObject();
    return std::string(TextOf(buffer));
}

std::string Listings::CursorText(const Snapshot& i_snapshot, Position i_position) {
    char numbers[2 * number_size + 1];
    std::snprintf(numbers, sizeof numbers, "%08x%08x", static_cast<unsigned>(i_position.entry),
                  static_cast<unsigned>(i_position.page));
    return std::string(cursor_prefix) + i_snapshot.key + numbers;
}

} // namespace DevService
