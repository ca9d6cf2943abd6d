#include "Storage.h"

#include "ContentHash.h"
#include "Encoding.h"
#include "Refusal.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace DevService {

namespace fs = std::filesystem;

namespace {

/// Files up to this size are hashed for an answer about them; that takes less than a tenth of a second.
constexpr std::uint64_t max_quick_hash_size = std::uint64_t{64} << 20;

/// Names that JSON could not carry, and those of the service's own files, are not shown.
bool IsShown(const std::string& i_name) {
    return IsUtf8(i_name) && !i_name.starts_with(hidden_prefix);
}

std::string HashOfFile(const fs::path& i_file) {
    constexpr std::size_t piece_size = std::size_t{256} << 10;
    std::ifstream stream(i_file, std::ios::binary);
    std::vector<char> piece(piece_size);
    ContentHash hash;
    while (stream) {
        stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        hash.Add({piece.data(), static_cast<std::size_t>(stream.gcount())});
    }
    return hash.Finish();
}

std::int64_t WholeSeconds(std::int64_t i_nanoseconds) {
    constexpr std::int64_t second = 1'000'000'000;
    return i_nanoseconds / second - (i_nanoseconds % second < 0);
}

} // namespace

Storage::Storage(const fs::path& i_root) : m_root(fs::canonical(i_root)) {}

Storage::Place Storage::Find(const ServicePath& i_path) const {
    Place place{{}, m_root, FileStatus::Of(m_root), false};
    for (const std::string& name : i_path.names) {
        std::string stored = name;
        if (place.IsFolder()) {
            stored = StoredName(place.real, name).value_or(name);
            place.status = FileStatus::Of(place.real / stored);
        } else {
            place.has_file_ancestor |= place.status.Exists();
            place.status = {};
        }
        place.real /= stored;
        place.path.names.push_back(Composed(stored));
    }
    return place;
}

Storage::Place Storage::Require(std::string_view i_argument, std::string_view i_member) const {
    Place place = Find(Resolve(i_argument, i_member));
    if (!place.IsFile() && !place.IsFolder())
        throw RouteError({std::string(i_member), "not_found"});
    return place;
}

ServicePath Storage::Resolve(std::string_view i_argument, std::string_view i_member) const {
    const RouteError not_found({std::string(i_member), "not_found"});
    if (i_argument.starts_with("rev:")) {
        const std::string_view revision = i_argument.substr(4);
        const auto path = Search([&](const FileStatus& i_status) {
            return i_status.kind == FileStatus::Kind::File && i_status.Revision() == revision;
        });
        return path ? *path : throw not_found;
    }
    if (i_argument.starts_with("id:")) {
        const std::size_t end = std::min(i_argument.find('/'), i_argument.size());
        const std::string_view id = i_argument.substr(0, end);
        auto path = Search([&](const FileStatus& i_status) { return m_notes.Id(i_status) == id; });
        if (!path)
            throw not_found;
        const ServicePath rest = ServicePath::Parse(i_argument.substr(end), i_member);
        path->names.insert(path->names.end(), rest.names.begin(), rest.names.end());
        return *path;
    }
    if (i_argument.starts_with("ns:"))
        throw not_found; // an account here has no other namespaces
    return ServicePath::Parse(i_argument, i_member);
}

std::vector<Storage::Entry> Storage::Scan(const fs::path& i_folder, bool i_is_recursive) const {
    std::vector<Entry> entries;
    ScanInto(entries, i_folder, {}, i_is_recursive);
    std::ranges::sort(entries, {}, &Entry::path);
    return entries;
}

ItemMetadata Storage::Describe(const ServicePath& i_path, const FileStatus& i_status) const {
    ItemMetadata metadata;
    metadata.name = i_path.IsRoot() ? std::string() : i_path.names.back();
    metadata.path = i_path.Text();
    metadata.id = m_notes.Id(i_status);
    if (i_status.kind == FileStatus::Kind::Folder) {
        metadata.kind = ItemMetadata::Kind::Folder;
        return metadata;
    }
    ItemNotes::Content content = m_notes.ContentOf(i_status);
    metadata.size = i_status.size;
    metadata.server_modified = WholeSeconds(i_status.modified_ns);
    metadata.client_modified = content.client_modified.value_or(metadata.server_modified);
    metadata.revision = i_status.Revision();
    metadata.content_hash = std::move(content.hash);
    return metadata;
}

ItemMetadata Storage::Describe(const Place& i_place, HashWanted i_hash) const {
    ItemMetadata metadata = Describe(i_place.path, i_place.status);
    const bool is_missing = i_place.IsFile() && metadata.content_hash.empty();
    if (is_missing && i_hash == HashWanted::WhenQuick && i_place.status.size <= max_quick_hash_size) {
        metadata.content_hash = HashOfFile(i_place.real);
        ItemNotes::Content content = m_notes.ContentOf(i_place.status);
        content.hash = metadata.content_hash;
        m_notes.SetContent(i_place.status, std::move(content));
    }
    return metadata;
}

std::optional<std::string> Storage::StoredName(const fs::path& i_folder, const std::string& i_name) const {
    if (i_name.starts_with(hidden_prefix))
        return std::nullopt;
    if (FileStatus::Of(i_folder / i_name).Exists())
        return i_name;
    const std::string wanted = ToLower(i_name);
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(i_folder, error)) {
        std::string name = entry.path().filename().string();
        if (IsShown(name) && ToLower(Composed(name)) == wanted)
            return name;
    }
    return std::nullopt;
}

template <class Predicate>
std::optional<ServicePath> Storage::Search(Predicate i_is_wanted) const {
    for (const Entry& entry : Scan(m_root, true))
        if (i_is_wanted(entry.status))
            return ServicePath::Parse('/' + entry.path, "path");
    return std::nullopt;
}

void Storage::ScanInto(std::vector<Entry>& io_entries, const fs::path& i_folder, const std::string& i_prefix,
                       bool i_is_recursive) const {
    // A folder that vanishes or becomes unreadable meanwhile is reported as empty: others may change it at any time.
    std::error_code error;
    for (fs::directory_iterator position(i_folder, error), end; !error && position != end; position.increment(error)) {
        std::string name = position->path().filename().string();
        if (!IsShown(name))
            continue;
        const FileStatus status = FileStatus::Of(position->path());
        if (status.kind != FileStatus::Kind::File && status.kind != FileStatus::Kind::Folder)
            continue;
        std::string path = i_prefix + Composed(name);
        if (i_is_recursive && status.kind == FileStatus::Kind::Folder)
            ScanInto(io_entries, position->path(), path + '/', true);
        io_entries.push_back({std::move(path), status});
    }
}

} // namespace DevService
