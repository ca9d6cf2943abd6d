#pragma once

#include "Batches.h"
#include "Listings.h"
#include "Storage.h"
#include "StorageWriter.h"
#include "UploadSessions.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace DevService {

/// One account: a person and the folder that acts as their storage.
struct Account {
    /// @param i_root an existing folder
    Account(std::string i_name, std::string i_password, const std::filesystem::path& i_root);

    std::string name;
    std::string password;
    std::string email;
    std::string id; ///< 40 characters, always the same for the same name
    Storage storage;
    StorageWriter writer;
    Listings listings;
    UploadSessions sessions;
    AsyncJobs jobs;
};

/// The accounts and their access tokens. The accounts are fixed before the service starts; the tokens come and go,
/// from any thread.
class Accounts {
public:
    using Clock = std::chrono::steady_clock;

    Account& Add(std::string i_name, std::string i_password, const std::filesystem::path& i_root);
    std::size_t Count() const { return m_accounts.size(); }
    Account& At(std::size_t i_index) { return m_accounts.at(i_index); }

    /// A new token. @param i_lifetime empty: it never expires
    std::string IssueToken(Account& i_account, std::optional<Clock::duration> i_lifetime = {});

    /// @returns false when there is no such token
    bool Revoke(const std::string& i_token);

    /// @throws AccessRefused invalid_access_token, expired_access_token
    Account& Authenticate(const std::string& i_token);

private:
    struct Grant {
        Account* account;
        std::optional<Clock::time_point> end;
    };

    std::deque<Account> m_accounts;
    std::mutex m_mutex;
    std::unordered_map<std::string, Grant> m_grants;
};

} // namespace DevService
