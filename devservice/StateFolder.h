#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace DevService {

/// The folder that tells other programs how to reach the service. Each file appears complete or not at all, and only
/// its owner may read it, since it may be a token.
class StateFolder {
public:
    /// Creates the folder if it is missing. @throws std::filesystem::filesystem_error
    explicit StateFolder(std::filesystem::path i_folder);

    const std::filesystem::path& Path() const { return m_folder; }

    /// @throws std::runtime_error when the file cannot be written
    void Write(std::string_view i_name, std::string_view i_content) const;

    void Remove(std::string_view i_name) const;

private:
    std::filesystem::path m_folder;
};

} // namespace DevService
