#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace DevService {

/// What the file system says about one name. The only file that goes beyond std::filesystem, which has no file numbers
/// and asks the system again for every fact.
struct FileStatus {
    enum class Kind {
        Missing,
        File,
        Folder,
        Other ///< a link, a pipe or the like: never followed or shown, so that nothing outside the root is touched
    };

    Kind kind = Kind::Missing;
    std::uint64_t size = 0;
    std::int64_t modified_ns = 0; ///< since 1970, UTC
    std::uint64_t device = 0;
    std::uint64_t number = 0; ///< identifies the file on its device, whatever its name

    bool Exists() const { return kind != Kind::Missing; }

    /// Opaque revision of a file: different for every new content.
    std::string Revision() const;

    bool operator==(const FileStatus&) const = default;

    /// @throws std::filesystem::filesystem_error when the system refuses
    static FileStatus Of(const std::filesystem::path& i_path);
};

} // namespace DevService
