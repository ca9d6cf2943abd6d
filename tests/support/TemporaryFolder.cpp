#include "support/TemporaryFolder.h"

#include "qorv/Base.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Tests {

TemporaryFolder::TemporaryFolder() {
    static std::atomic<int> count = 0;
    const std::string name = "tests-" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++count);
    m_path = std::filesystem::temp_directory_path() / name;
    std::filesystem::remove_all(m_path); // Left by a killed process with the same id.
    std::filesystem::create_directory(m_path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

TemporaryVariable::TemporaryVariable(std::wstring i_name, const std::wstring& i_value)
    : m_name(std::move(i_name)), m_old_value(Variable(m_name)) {
    SetEnvironmentVariableW(m_name.c_str(), i_value.c_str());
}

TemporaryVariable::~TemporaryVariable() {
    SetEnvironmentVariableW(m_name.c_str(), m_old_value.empty() ? nullptr : m_old_value.c_str());
}

std::wstring Variable(const std::wstring& i_name) {
    wchar_t value[1024];
    const DWORD length = GetEnvironmentVariableW(i_name.c_str(), value, static_cast<DWORD>(std::size(value)));
    return length < std::size(value) ? std::wstring(value, length) : std::wstring();
}

std::string ReadBytes(const std::filesystem::path& i_path) {
    std::ifstream file(i_path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::filesystem::path& i_path, const std::string& i_bytes) {
    std::ofstream file(i_path, std::ios::binary);
    file.write(i_bytes.data(), static_cast<std::streamsize>(i_bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + i_path.string());
}

} // namespace Tests
