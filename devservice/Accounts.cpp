#include "Accounts.h"

#include "ContentHash.h"
#include "Encoding.h"
#include "Refusal.h"

#include <algorithm>

namespace DevService {
namespace {

std::string AccountId(std::string_view i_name) {
    constexpr std::size_t digit_count = 34; // with the prefix the 40 characters that the service prescribes
    Sha256 hash;
    hash.Add(i_name);
    const std::string digest = hash.Finish();
    return "dbid:A" +
           Base64Url({reinterpret_cast<const unsigned char*>(digest.data()), digest.size()}).substr(0, digit_count);
}

/// "Dana Sample" -> "dana.sample@example.com"; all other characters separate words.
std::string EmailOf(std::string_view i_name) {
    std::string local;
    for (const char character : ToLower(i_name)) {
        const bool is_plain = (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
        if (is_plain)
            local += character;
        else if (!local.empty() && local.back() != '.')
            local += '.';
    }
    while (local.ends_with('.'))
        local.pop_back();
    return (local.empty() ? "user" : local) + "@example.com";
}

} // namespace

Account::Account(std::string i_name, std::string i_password, const std::filesystem::path& i_root)
    : name(std::move(i_name))
    , password(std::move(i_password))
    , email(EmailOf(name))
    , id(AccountId(name))
    , storage(i_root)
    , writer(storage)
    , listings(storage)
    , sessions(storage.Root()) {}

Account& Accounts::Add(std::string i_name, std::string i_password, const std::filesystem::path& i_root) {
    return m_accounts.emplace_back(std::move(i_name), std::move(i_password), i_root);
}

std::string Accounts::IssueToken(Account& i_account, std::optional<Clock::duration> i_lifetime) {
    constexpr std::size_t token_bytes = 48;
    std::string token = "sl.u." + RandomText(token_bytes);
    const std::lock_guard lock(m_mutex);
    m_grants[token] = {&i_account, i_lifetime ? std::optional(Clock::now() + *i_lifetime) : std::nullopt};
    return token;
}

bool Accounts::Revoke(const std::string& i_token) {
    const std::lock_guard lock(m_mutex);
    return m_grants.erase(i_token) > 0;
}

Account& Accounts::Authenticate(const std::string& i_token) {
    const std::lock_guard lock(m_mutex);
    const auto grant = m_grants.find(i_token);
    if (grant == m_grants.end())
        throw AccessRefused("invalid_access_token");
    if (grant->second.end && *grant->second.end <= Clock::now())
        throw AccessRefused("expired_access_token");
    return *grant->second.account;
}

} // namespace DevService
