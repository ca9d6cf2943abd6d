#include "StateFolder.h"

#include "Encoding.h"

#include <fstream>
#include <stdexcept>

namespace DevService {

namespace fs = std::filesystem;

StateFolder::StateFolder(fs::path i_folder) : m_folder(std::move(i_folder)) {
    if (fs::create_directories(m_folder))
        fs::permissions(m_folder, fs::perms::owner_all);
}

void StateFolder::Write(std::string_view i_name, std::string_view i_content) const {
    const fs::path target = m_folder / i_name;
    constexpr std::size_t name_bytes = 6;
    const fs::path temporary = m_folder / (std::string(i_name) + ".new-" + RandomText(name_bytes));
    std::ofstream stream(temporary, std::ios::binary);
    fs::permissions(temporary, fs::perms::owner_read | fs::perms::owner_write);
    stream << i_content;
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + target.string());
    fs::rename(temporary, target);
}

void StateFolder::Remove(std::string_view i_name) const {
    std::error_code ignored;
    fs::remove(m_folder / i_name, ignored);
}

} // namespace DevService
