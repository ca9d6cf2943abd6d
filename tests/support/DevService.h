#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// The development service that `tools/with-service.sh` runs for a test program: its folder, its tokens, and its control
// interface. All functions throw std::runtime_error when it does not answer as it should.

namespace Tests::Service {

/// One request as the service received it. Texts are bytes.
struct Request {
    std::string host;
    std::string line;   ///< "POST /2/files/delete HTTP/1.1"
    std::string fields; ///< The header lines after it, each with its line break.
    std::string body;   ///< Its first MiB.
    std::uint64_t body_size = 0;
    std::string body_sha256;
    unsigned status = 0;
    bool is_complete = false;

    /// The value of a header, ignoring case; "-" if it is missing.
    std::string Field(const std::string& i_name) const;
};

/// The requests since the last `ClearRequests`.
std::vector<Request> Requests();
void ClearRequests();

/// Adds a rule such as {"path": "2/files/download", "status": 500}.
void AddFault(const std::string& i_json);
void ClearFaults();

/// {"size": 2, "empty_pages": true}; {} for the service's own.
void SetPaging(const std::string& i_json);

/// A new token of the first account.
std::string IssueToken();
/// Makes the service refuse all tokens of `IssueToken`.
void RevokeTokens();
/// Every token that this process has used.
std::vector<std::string> KnownTokens();

/// A token of an account that never expires.
enum class Account { First, Second };
std::wstring Token(Account i_account = Account::First);

/// "Authorization:Bearer " and the first account's token, with the line end.
std::wstring AuthorizationHeader();

/// A path below the first account's folder. `i_path` begins with "/", as the service's paths do.
std::filesystem::path LocalPath(const std::wstring& i_path);

} // namespace Tests::Service

namespace Tests {

/// A test that finds the service with an empty account, without faults and records.
class ServiceTest : public testing::Test {
protected:
    ServiceTest();
};

} // namespace Tests
