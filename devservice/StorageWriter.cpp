#include "StorageWriter.h"

#include "Encoding.h"
#include "Refusal.h"

#include <chrono>

namespace DevService {

namespace fs = std::filesystem;

namespace {

RouteError Conflict(std::string_view i_member, std::string_view i_with) {
    return RouteError({std::string(i_member), "conflict", std::string(i_with)});
}

std::string_view KindTag(const Storage::Place& i_place) {
    return i_place.IsFolder() ? "folder" : "file";
}

/// Turns a file system error into the service's refusal in `i_member`.
template <class Step>
auto InFileSystem(std::string_view i_member, Step i_step) {
    try {
        return i_step();
    } catch (const fs::filesystem_error& error) {
        const bool is_full = error.code() == std::errc::no_space_on_device;
        throw RouteError({std::string(i_member), is_full ? "insufficient_space" : "no_write_permission"});
    }
}

} // namespace

ItemMetadata StorageWriter::CreateFolder(std::string_view i_argument, bool i_has_autorename) {
    const std::lock_guard lock(m_mutex);
    Storage::Place place = FreePlace(m_storage.Resolve(i_argument, "path"), i_has_autorename, true, "path");
    InFileSystem("path", [&] { fs::create_directories(place.real); });
    place.status = FileStatus::Of(place.real);
    return m_storage.Describe(place.path, place.status);
}

ItemMetadata StorageWriter::Delete(std::string_view i_argument, const std::optional<std::string>& i_parent_revision) {
    const std::lock_guard lock(m_mutex);
    const Storage::Place place = m_storage.Require(i_argument, "path_lookup");
    if (i_parent_revision && (!place.IsFile() || place.status.Revision() != *i_parent_revision))
        throw Conflict("path_write", KindTag(place));
    ItemMetadata metadata = m_storage.Describe(place, Storage::HashWanted::WhenKnown);
    InFileSystem("path_write", [&] { fs::remove_all(place.real); });
    m_storage.Notes().Forget(place.status);
    return metadata;
}

ItemMetadata StorageWriter::Relocate(Relocation i_what, std::string_view i_from, std::string_view i_to,
                                     bool i_has_autorename) {
    const std::lock_guard lock(m_mutex);
    const Storage::Place from = m_storage.Require(i_from, "from_lookup");
    const ServicePath to = m_storage.Resolve(i_to, "to");
    if (from.path.IsRoot() || to.IsRoot())
        throw RouteError({"to", "malformed_path"});
    if (to.IsWithin(from.path)) {
        const bool is_same_item = to.names.size() == from.path.names.size();
        // The service cannot rename only the case: it reports success and changes nothing.
        if (is_same_item && i_what == Relocation::Move && to.names != from.path.names)
            return m_storage.Describe(from, Storage::HashWanted::WhenQuick);
        if (!is_same_item && from.IsFolder() && i_what == Relocation::Move)
            throw RouteError({"cant_move_folder_into_itself"});
        if (is_same_item || from.IsFolder())
            throw RouteError({"duplicated_or_nested_paths"});
    }
    Storage::Place place = FreePlace(to, i_has_autorename, from.IsFolder(), "to");
    const ItemNotes::Content content = m_storage.Notes().ContentOf(from.status);
    InFileSystem("to", [&] {
        MakeParents(place);
        if (i_what == Relocation::Copy)
            CopyTree(from.real, place.real);
        else
            fs::rename(from.real, place.real);
        if (from.IsFile()) // the service counts a moved or copied file as changed now
            fs::last_write_time(place.real, fs::file_time_type::clock::now());
    });
    place.status = FileStatus::Of(place.real);
    m_storage.Notes().SetContent(place.status, content);
    return m_storage.Describe(place, Storage::HashWanted::WhenQuick);
}

fs::path StorageWriter::FolderForUpload(std::string_view i_argument) {
    ServicePath path = m_storage.Resolve(i_argument, "path").Parent();
    while (!path.IsRoot() && !m_storage.Find(path).IsFolder())
        path = path.Parent();
    return m_storage.Find(path).real;
}

ItemMetadata StorageWriter::Store(IncomingFile& io_file, const Commit& i_commit) {
    const std::string hash = io_file.Close();
    if (i_commit.content_hash.value_or(hash) != hash)
        throw RouteError({"content_hash_mismatch"});
    const std::lock_guard lock(m_mutex);
    const ServicePath wanted = m_storage.Resolve(i_commit.path, "path");
    if (!i_commit.is_strict_conflict) {
        // Nothing is written if the same bytes are already there.
        const Storage::Place present = m_storage.Find(wanted);
        if (present.IsFile() && present.status.size == io_file.Size()) {
            ItemMetadata metadata = m_storage.Describe(present, Storage::HashWanted::WhenQuick);
            if (metadata.content_hash == hash)
                return metadata;
        }
    }
    Storage::Place place = PlaceForCommit(wanted, i_commit);
    const FileStatus old = place.status;
    InFileSystem("path", [&] {
        MakeParents(place);
        io_file.MoveTo(place.real);
        const bool has_new_case = old.Exists() && place.path.names.back() != wanted.names.back() &&
                                  ToLower(place.path.names.back()) == ToLower(wanted.names.back());
        if (has_new_case) { // an overwriting upload changes the stored spelling of the name
            const fs::path spelled = place.real.parent_path() / wanted.names.back();
            fs::rename(place.real, spelled);
            place.real = spelled;
            place.path = place.path.WithName(wanted.names.back());
        }
    });
    place.status = FileStatus::Of(place.real);
    if (old.Exists())
        m_storage.Notes().Replace(old, place.status);
    m_storage.Notes().SetContent(place.status, {i_commit.client_modified, hash});
    return m_storage.Describe(place, Storage::HashWanted::WhenKnown);
}

Storage::Place StorageWriter::PlaceForCommit(const ServicePath& i_path, const Commit& i_commit) {
    if (i_path.IsRoot())
        throw RouteError({"path", "malformed_path"});
    Storage::Place place = m_storage.Find(i_path);
    CheckWritable(place, "path");
    if (!place.status.Exists())
        return place;
    const bool is_based_on_present = place.IsFile() && place.status.Revision() == i_commit.revision;
    const bool may_replace =
        i_commit.mode == Commit::Mode::Overwrite || (i_commit.mode == Commit::Mode::Update && is_based_on_present);
    if (place.IsFile() && may_replace)
        return place;
    return FreePlace(i_path, i_commit.has_autorename, false, "path");
}

Storage::Place StorageWriter::FreePlace(ServicePath i_path, bool i_has_autorename, bool i_is_folder,
                                        std::string_view i_member) {
    if (i_path.IsRoot())
        throw RouteError({std::string(i_member), "malformed_path"});
    const std::string name = i_path.names.back();
    Storage::Place place = m_storage.Find(i_path);
    CheckWritable(place, i_member);
    for (unsigned number = 1; place.status.Exists(); ++number) {
        if (!i_has_autorename)
            throw Conflict(i_member, KindTag(place));
        place = m_storage.Find(i_path.WithName(NumberedName(name, number, i_is_folder)));
    }
    return place;
}

void StorageWriter::CheckWritable(const Storage::Place& i_place, std::string_view i_member) {
    if (i_place.has_file_ancestor)
        throw Conflict(i_member, "file_ancestor");
    if (i_place.status.kind == FileStatus::Kind::Other)
        throw RouteError({std::string(i_member), "no_write_permission"});
    for (const std::string& name : i_place.path.names)
        if (IsDisallowedName(name))
            throw RouteError({std::string(i_member), "disallowed_name"});
}

void StorageWriter::MakeParents(const Storage::Place& i_place) {
    fs::create_directories(i_place.real.parent_path());
}

/// Copies to a hidden name first, so that the copy appears complete or not at all.
void StorageWriter::CopyTree(const fs::path& i_from, const fs::path& i_to) {
    constexpr std::size_t name_bytes = 12;
    const fs::path hidden = i_to.parent_path() / (std::string(hidden_prefix) + RandomText(name_bytes));
    try {
        fs::copy(i_from, hidden, fs::copy_options::recursive | fs::copy_options::skip_symlinks);
        fs::rename(hidden, i_to);
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(hidden, ignored);
        throw;
    }
}

} // namespace DevService
