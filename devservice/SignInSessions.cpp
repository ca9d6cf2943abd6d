#include "SignInSessions.h"

#include "Encoding.h"

namespace DevService {
namespace {

constexpr std::size_t secret_bytes = 24;

} // namespace

std::string SignInSessions::Begin(Account& i_account) {
    std::string cookie = RandomText(secret_bytes);
    const std::lock_guard lock(m_mutex);
    m_sessions[cookie] = {&i_account, RandomText(secret_bytes)};
    return cookie;
}

std::optional<SignInSessions::Session> SignInSessions::Find(const std::string& i_cookie) {
    const std::lock_guard lock(m_mutex);
    const auto session = m_sessions.find(i_cookie);
    if (session == m_sessions.end())
        return std::nullopt;
    return session->second;
}

void SignInSessions::End(const std::string& i_cookie) {
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(i_cookie);
}

} // namespace DevService
