#include "IncomingFile.h"

#include "Encoding.h"
#include "Refusal.h"
#include "ServicePath.h"

namespace DevService {

namespace fs = std::filesystem;

IncomingFile::IncomingFile(const fs::path& i_folder) {
    constexpr std::size_t name_bytes = 12;
    m_path = i_folder / (std::string(hidden_prefix) + RandomText(name_bytes));
    m_stream.rdbuf()->pubsetbuf(nullptr, 0); // the data already comes in large pieces
    m_stream.open(m_path, std::ios::binary);
    if (!m_stream)
        throw RouteError({"path", "no_write_permission"});
}

IncomingFile::~IncomingFile() {
    m_stream.close();
    std::error_code ignored;
    if (!m_path.empty())
        fs::remove(m_path, ignored);
}

void IncomingFile::Write(std::string_view i_data) {
    m_stream.write(i_data.data(), static_cast<std::streamsize>(i_data.size()));
    if (!m_stream)
        throw RouteError({"path", "insufficient_space"});
    m_hash.Add(i_data);
    m_size += i_data.size();
}

const std::string& IncomingFile::Close() {
    if (!m_content_hash.empty())
        return m_content_hash;
    m_stream.close();
    if (!m_stream)
        throw RouteError({"path", "insufficient_space"});
    return m_content_hash = m_hash.Finish();
}

void IncomingFile::MoveTo(const fs::path& i_target) {
    fs::rename(m_path, i_target);
    m_path.clear();
}

} // namespace DevService
