#pragma once

#include "IncomingFile.h"
#include "Storage.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace DevService {

/// Changes to the folder that one account shows. Changes to one account are serialised, so that a check and the step
/// after it are atomic. All operations throw RouteError.
class StorageWriter {
public:
    explicit StorageWriter(Storage& io_storage) : m_storage(io_storage) {}

    enum class Relocation { Copy, Move };

    struct Commit {
        std::string path; ///< argument of the call
        enum class Mode { Add, Overwrite, Update } mode = Mode::Add;
        std::string revision; ///< the one that an update is based on
        bool has_autorename = false;
        bool is_strict_conflict = false;
        std::optional<std::int64_t> client_modified; ///< seconds since 1970
        std::optional<std::string> content_hash;     ///< what the bytes must have, if the client says so
    };

    /// Creates the folder and missing parents.
    ItemMetadata CreateFolder(std::string_view i_argument, bool i_has_autorename);

    /// Deletes the item and everything below it. @returns what it was
    ItemMetadata Delete(std::string_view i_argument, const std::optional<std::string>& i_parent_revision);

    ItemMetadata Relocate(Relocation i_what, std::string_view i_from, std::string_view i_to, bool i_has_autorename);

    /// The folder in which an upload to that path should collect its bytes: an existing one, from which the file can be
    /// moved into place in one step.
    std::filesystem::path FolderForUpload(std::string_view i_argument);

    /// Moves a completely received file into place.
    ItemMetadata Store(IncomingFile& io_file, const Commit& i_commit);

private:
    Storage::Place FreePlace(ServicePath i_path, bool i_has_autorename, bool i_is_folder, std::string_view i_member);
    void CheckWritable(const Storage::Place& i_place, std::string_view i_member);
    void MakeParents(const Storage::Place& i_place);
    void CopyTree(const std::filesystem::path& i_from, const std::filesystem::path& i_to);
    Storage::Place PlaceForCommit(const ServicePath& i_path, const Commit& i_commit);

    Storage& m_storage;
    std::mutex m_mutex;
};

} // namespace DevService
