#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace DevService {

struct Account;

/// Who is signed in, in which browser. Thread-safe.
class SignInSessions {
public:
    struct Session {
        Account* account;
        std::string form_key; ///< included in every form of the session, so that no other site can submit one
    };

    /// @returns the value of the session's cookie
    std::string Begin(Account& i_account);

    std::optional<Session> Find(const std::string& i_cookie);
    void End(const std::string& i_cookie);

private:
    std::mutex m_mutex;
    std::unordered_map<std::string, Session> m_sessions;
};

} // namespace DevService
