#include "UploadSessions.h"

#include "Encoding.h"
#include "Refusal.h"

#include <vector>

namespace DevService {
namespace {

RouteError LookupError(std::string_view i_member, std::string i_tag) {
    std::vector<std::string> tags;
    if (!i_member.empty())
        tags.emplace_back(i_member);
    tags.push_back(std::move(i_tag));
    return RouteError(std::move(tags));
}

} // namespace

void UploadSessions::Locked::RequireOpen() const {
    if (m_session->is_closed)
        throw RouteError({"closed"});
}

void UploadSessions::Locked::RequireClosed() const {
    if (!m_session->is_closed)
        throw RouteError({"lookup_failed", "not_closed"});
}

std::string UploadSessions::Start() {
    constexpr std::size_t id_bytes = 13;
    std::string id = "AAAA" + RandomText(id_bytes);
    auto session = std::make_shared<Session>(m_folder);
    const std::lock_guard lock(m_mutex);
    m_sessions.emplace(id, std::move(session));
    return id;
}

UploadSessions::Locked UploadSessions::Lock(const std::string& i_id, std::uint64_t i_offset,
                                            std::string_view i_member) {
    std::shared_ptr<Session> session;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_sessions.find(i_id);
        if (found == m_sessions.end())
            throw LookupError(i_member, "not_found");
        session = found->second;
    }
    Locked locked(std::move(session));
    const std::uint64_t size = locked.File().Size();
    if (i_offset != size)
        throw LookupError(i_member, "incorrect_offset").With("correct_offset", std::to_string(size));
    return locked;
}

void UploadSessions::Forget(const std::string& i_id) {
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(i_id);
}

} // namespace DevService
