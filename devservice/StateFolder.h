#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace DevService {

/// The folder in which the service tells other programs how to reach it. Each file appears whole or not at all, and
/// only its owner may read it, since tokens are in there.
class StateFolder {
public:
    /// Makes the folder when it is missing. @throws std::filesystem::filesystem_error
    explicit StateFolder(std::filesystem::path i_folder);

    const std::filesystem::path& Path() const { return m_folder; }

    /// @throws std::runtime_error when the file cannot be written
    void Write(std::string_view i_name, std::string_view i_content) const;

    void Remove(std::string_view i_name) const;

private:
    std::filesystem::path m_folder;
};

} // namespace DevService
