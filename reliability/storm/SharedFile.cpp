#include "SharedFile.h"

#include <algorithm>

namespace Storm {

namespace {

bool Contains(const std::vector<Content>& i_contents, const Content& i_content) {
    return std::ranges::any_of(i_contents, [&](const Content& i_one) { return AreEqual(i_one, i_content); });
}

} // namespace

void SharedFile::Begin(Content i_content) {
    const std::lock_guard lock(m_mutex);
    m_ever = {i_content};
    m_first = std::move(i_content);
    m_is_first_over = false;
    m_last.clear();
}

void SharedFile::OnWriting(const std::string& i_client, Content i_content) {
    const std::lock_guard lock(m_mutex);
    m_ever.push_back(i_content);
    m_last[i_client].push_back(std::move(i_content));
}

void SharedFile::OnWritten(const std::string& i_client) {
    const std::lock_guard lock(m_mutex);
    auto& last = m_last[i_client];
    last.erase(last.begin(), last.end() - 1);
    m_is_first_over = true;
}

bool SharedFile::MayBeSeen(const Content& i_content) const {
    const std::lock_guard lock(m_mutex);
    return Contains(m_ever, i_content);
}

bool SharedFile::MayStay(const Content& i_content) const {
    const std::lock_guard lock(m_mutex);
    return (!m_is_first_over && AreEqual(m_first, i_content)) ||
           std::ranges::any_of(m_last, [&](const auto& i_client) { return Contains(i_client.second, i_content); });
}

} // namespace Storm
