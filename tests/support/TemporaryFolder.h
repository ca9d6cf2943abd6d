#pragma once

#include <filesystem>
#include <string>

namespace Tests {

/// A new folder among the temporary files, removed with its contents.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

/// Sets an environment variable for a while.
class TemporaryVariable {
public:
    TemporaryVariable(std::wstring i_name, const std::wstring& i_value);
    TemporaryVariable(const TemporaryVariable&) = delete;
    TemporaryVariable& operator=(const TemporaryVariable&) = delete;
    ~TemporaryVariable();

private:
    std::wstring m_name;
    std::wstring m_old_value;
};

/// Empty for a variable that is not set.
std::wstring Variable(const std::wstring& i_name);

/// Empty for a missing file.
std::string ReadBytes(const std::filesystem::path& i_path);
void WriteBytes(const std::filesystem::path& i_path, const std::string& i_bytes);

} // namespace Tests
