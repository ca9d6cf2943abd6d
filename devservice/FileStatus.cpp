#include "FileStatus.h"

#include "ContentHash.h"
#include "Encoding.h"

#include <sys/stat.h>

#include <cerrno>

namespace DevService {

std::string FileStatus::Revision() const {
    Sha256 hash;
    for (const std::uint64_t fact : {size, static_cast<std::uint64_t>(modified_ns), device, number})
        hash.Add({reinterpret_cast<const char*>(&fact), sizeof fact});
    const std::string digest = hash.Finish();
    constexpr std::size_t byte_count = 10;
    return Hex({reinterpret_cast<const unsigned char*>(digest.data()), byte_count});
}

FileStatus FileStatus::Of(const std::filesystem::path& i_path) {
    struct stat facts;
    if (lstat(i_path.c_str(), &facts) != 0) {
        if (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG)
            return {};
        throw std::filesystem::filesystem_error("cannot look at", i_path,
                                                std::error_code(errno, std::generic_category()));
    }
    FileStatus status;
    status.kind = S_ISREG(facts.st_mode) ? Kind::File : S_ISDIR(facts.st_mode) ? Kind::Folder : Kind::Other;
    status.size = static_cast<std::uint64_t>(facts.st_size);
    status.modified_ns = std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
    status.device = facts.st_dev;
    status.number = facts.st_ino;
    return status;
}

} // namespace DevService
