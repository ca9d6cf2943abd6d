#pragma once

#include "ContentHash.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace DevService {

/// A file being uploaded, under a hidden name in the file system of its target. Unless moved onto the target, it is
/// removed with this object, so a dropped upload leaves nothing behind.
class IncomingFile {
public:
    /// @param i_folder an existing folder
    explicit IncomingFile(const std::filesystem::path& i_folder);
    ~IncomingFile();
    IncomingFile(const IncomingFile&) = delete;
    IncomingFile& operator=(const IncomingFile&) = delete;

    /// @throws RouteError path/insufficient_space when the disk is full
    void Write(std::string_view i_data);

    /// Ends the writing, if it has not ended yet. @returns the content hash of everything written
    const std::string& Close();

    /// Moves the closed file onto `i_target`, replacing a file there in one step.
    void MoveTo(const std::filesystem::path& i_target);

    std::uint64_t Size() const { return m_size; }

private:
    std::filesystem::path m_path;
    std::ofstream m_stream;
    ContentHash m_hash;
    std::string m_content_hash; ///< once closed
    std::uint64_t m_size = 0;
};

} // namespace DevService
