#pragma once

#include "http/Request.h"
#include "http/Response.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Http {

/// A user name and a password; no credentials when the user name is empty.
struct Credentials {
    std::wstring user_name;
    std::wstring password;
};

/// The parts of an absolute http or https address.
struct Uri {
    std::wstring scheme;
    std::wstring host;
    std::uint16_t port = 0;
    std::wstring path; ///< With the query.
};

/// A WinINet session with one host, and the authorization that every call to it carries. Copies share it.
///
/// Every call of the storage service is a POST. Failures are thrown: `HResultException` for WinINet's own failures,
/// with the code of the last error, `HttpException` for a reply whose status is not in 200..399. The session stays
/// usable after any of them. One call at a time.
class Session {
public:
    /// Opens a session to a host; sends nothing. `scheme_prefix` is "https://" (or "http://", without encryption).
    static Session Create(const std::wstring& scheme_prefix, const std::wstring& host,
                          const Credentials& server_credentials, const Credentials& proxy_credentials);

    /// Escapes and splits an address. Throws `Exception` for any scheme but http and https.
    static Uri CrackUri(const wchar_t* uri);

    /// Replaces the header lines that authorize each call; the text ends with a line end.
    void SetAuthorizationHeader(const std::wstring& text);

    /// Sends a body that is in memory, and answers the challenges of a 401 and a 407. `path` has no leading "/";
    /// `accept_types` ends with a null; `extra_headers` are lines, or null; `body` is UTF-8, null for none.
    Response SendRequest(const wchar_t* path, const wchar_t** accept_types, const wchar_t* extra_headers,
                         const char* body);

    /// Opens an upload of exactly `content_size` bytes, which the caller writes. `headers` are lines.
    Request CreateRequest(const std::wstring& headers, std::uint64_t content_size);

private:
    struct Attempts;
    struct Impl;

    explicit Session(std::shared_ptr<Impl> i_impl);

    DWORD RequestFlags() const;
    std::wstring AuthorizationHeader() const;
    bool AnswerChallenge(const Response& i_response, DWORD i_status, Attempts& io_attempts);
    bool AnswerOAuth(const Response& i_response, const std::wstring& i_challenge, Attempts& io_attempts);

    std::shared_ptr<Impl> m_impl;
};

} // namespace Http
