#include "http/HttpSession.h"

#include "core/trace/Check.h"
#include "core/trace/Secret.h"
#include "http/FailedReply.h"
#include "http/HttpException.h"
#include "http/InternetHandle.h"
#include "http/RequestUri.h"

#include <shlwapi.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <unordered_set>
#include <vector>

namespace {

using Http::RequestFailure;

constexpr wchar_t user_agent[] = L"Quillan HttpSession";
constexpr std::wstring_view https_prefix = L"https://";
constexpr std::wstring_view oauth_scheme = L"OAuth ";
constexpr std::size_t max_oauth_challenges = 5; // A call that is challenged this many times gives up.

/// The credential in the authorization header: what follows the scheme ("Bearer "), up to the end of the line.
std::wstring AuthorizationValue(const std::wstring& i_header_lines) {
    TRACE_FUNCTION();
    const std::size_t blank = std::min(i_header_lines.find(L' '), i_header_lines.size() - 1);
    const std::size_t end = std::min(i_header_lines.find_first_of(L"\r\n"), i_header_lines.size());
    return blank < end ? i_header_lines.substr(blank + 1, end - blank - 1) : std::wstring();
}

/// Sends a request whose body is in memory and returns the reply's status.
DWORD SendRequest(HINTERNET request_handle, const wchar_t* headers, const char* body, std::size_t body_size) {
    TRACE_FUNCTION();
    CHECK_THROW(HttpSendRequestW(request_handle, headers, -1, LPVOID(body), static_cast<DWORD>(body_size)),
                RequestFailure());
    DWORD status = 0;
    DWORD status_size = sizeof status;
    CHECK_THROW(
        HttpQueryInfoW(request_handle, HTTP_QUERY_FLAG_NUMBER | HTTP_QUERY_STATUS_CODE, &status, &status_size, nullptr),
        NoStatusException());
    return status;
}

/// A challenge with nothing after the scheme may arrive without the trailing space.
bool IsOAuthChallenge(const std::wstring& i_challenge) {
    TRACE_FUNCTION();
    return i_challenge.starts_with(oauth_scheme) || i_challenge == oauth_scheme.substr(0, oauth_scheme.size() - 1);
}

/// A request may be resent only after the previous reply has been read to its end.
void SkipBody(HINTERNET request_handle) {
    TRACE_FUNCTION();
    char piece[1024];
    DWORD size = 0;
    do {
        CHECK_THROW(InternetReadFile(request_handle, piece, sizeof piece, &size), RequestFailure());
    } while (size != 0);
}

void SetOption(HINTERNET i_request, DWORD i_option, const std::wstring& i_value) {
    TRACE_FUNCTION();
    const auto length = static_cast<DWORD>(i_value.size() + 1);
    CHECK_THROW(InternetSetOptionW(i_request, i_option, const_cast<wchar_t*>(i_value.c_str()), length),
                RequestFailure());
}

} // namespace

namespace Http {

struct Session::Impl {
    // Declared in this order, the connection is closed before the handle it was made from.
    InternetHandle open_handle;
    InternetHandle connect_handle;
    std::wstring scheme_prefix;
    std::wstring host;
    std::uint16_t port = INTERNET_DEFAULT_HTTPS_PORT;
    /// Guards what two calls of one account may change at the same time, when they are challenged.
    std::mutex authorization_lock;
    std::wstring authorization_header = L"Authorization:Bearer bla-bla"; // Until the creator sets the real one.
    std::unique_ptr<Secret> authorization_secret;
    std::map<std::wstring, Credentials> server_credentials; // By host.
    std::map<std::wstring, Credentials> proxy_credentials;
};

/// The answers to challenges that one call has tried.
struct Session::Attempts {
    std::unordered_set<std::wstring> uris{8};
    std::vector<std::wstring> oauth_challenges;
};

Session::Session(std::shared_ptr<Impl> i_impl) : m_impl(std::move(i_impl)) {
    TRACE_FUNCTION();
}

Session Session::Create(const std::wstring& scheme_prefix, const std::wstring& host,
                        const Credentials& server_credentials, const Credentials& proxy_credentials) {
    TRACE_FUNCTION();
    const auto impl = std::make_shared<Impl>();
    impl->open_handle = InternetHandle(InternetOpenW(user_agent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    CHECK_THROW(impl->open_handle != nullptr, LastErrorException());
    impl->connect_handle = InternetHandle(
        InternetConnectW(impl->open_handle, host.c_str(), impl->port, nullptr, nullptr, INTERNET_SERVICE_HTTP, 0, 0));
    CHECK_THROW(impl->connect_handle != nullptr, LastErrorException());
    impl->scheme_prefix = scheme_prefix;
    impl->host = host;
    if (!server_credentials.user_name.empty())
        impl->server_credentials[host] = server_credentials;
    if (!proxy_credentials.user_name.empty())
        impl->proxy_credentials[host] = proxy_credentials;
    return Session(impl);
}

Uri Session::CrackUri(const wchar_t* uri) {
    TRACE_FUNCTION();
    // The platform needs room for one character even when it is only asked for the size.
    wchar_t probe[1];
    DWORD size = 1;
    UrlEscapeW(uri, probe, &size, 0);
    std::wstring canonical(size, L'\0');
    wchar_t* const canonical_uri = canonical.data();
    CHECK_HRESULT_THROW(UrlEscapeW(uri, canonical_uri, &size, 0));

    URL_COMPONENTSW uri_components{};
    uri_components.dwStructSize = sizeof uri_components;
    uri_components.dwSchemeLength = uri_components.dwHostNameLength = uri_components.dwUrlPathLength =
        uri_components.dwExtraInfoLength = static_cast<DWORD>(-1); // Asks for pointers into the address.
    CHECK_THROW(InternetCrackUrlW(canonical_uri, 0, 0, &uri_components), LastErrorException());
    CHECK_THROW(uri_components.nScheme == INTERNET_SCHEME_HTTP || uri_components.nScheme == INTERNET_SCHEME_HTTPS,
                Exception(L"Internet scheme should be either HTTP or HTTPS"));
    return {{uri_components.lpszScheme, uri_components.dwSchemeLength},
            {uri_components.lpszHostName, uri_components.dwHostNameLength},
            uri_components.nPort,
            {uri_components.lpszUrlPath, uri_components.dwUrlPathLength + uri_components.dwExtraInfoLength}};
}

void Session::SetAuthorizationHeader(const std::wstring& text) {
    TRACE_FUNCTION();
    auto secret = std::make_unique<Secret>(AuthorizationValue(text));
    const std::lock_guard guard(m_impl->authorization_lock);
    m_impl->authorization_header = text;
    std::swap(m_impl->authorization_secret, secret);
}

std::wstring Session::AuthorizationHeader() const {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_impl->authorization_lock);
    return m_impl->authorization_header;
}

DWORD Session::RequestFlags() const {
    TRACE_FUNCTION();
    const bool is_secure = m_impl->scheme_prefix.starts_with(https_prefix);
    return INTERNET_FLAG_KEEP_CONNECTION | (is_secure ? INTERNET_FLAG_SECURE : 0);
}

Response Session::SendRequest(const wchar_t* path, const wchar_t** accept_types, const wchar_t* extra_headers,
                              const char* body) {
    TRACE_FUNCTION();
    CheckIsWanted();
    const std::size_t body_size = body != nullptr ? std::strlen(body) : 0;
    Response response;
    response.m_impl->handle = RequestHandle(
        HttpOpenRequestW(m_impl->connect_handle, L"POST", path, nullptr, nullptr, accept_types, RequestFlags(), 0));
    CHECK_THROW(response.m_impl->handle != nullptr, RequestFailure());
    if (body_size == 0)
        CHECK_THROW(HttpAddRequestHeadersW(response.m_impl->handle, L"content-length:0", -1,
                                           HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE),
                    RequestFailure());

    Attempts attempts;
    DWORD status = 0;
    do {
        // Nothing in between: the authorization text ends with its own line end.
        const std::wstring headers = AuthorizationHeader() + (extra_headers != nullptr ? extra_headers : L"");
        status = ::SendRequest(response.m_impl->handle, headers.c_str(), body, body_size);
    } while (AnswerChallenge(response, status, attempts));

    const std::wstring error_summary = status >= 400 ? LogFailedReply(response, trace_function.Name()) : std::wstring();
    CheckIsWanted(); // The reading of a failed reply may have been stopped.
    CHECK_THROW(200 <= status && status < 400, HttpException(response.m_impl->handle, {}, error_summary));
    response.m_impl->status = static_cast<std::uint16_t>(status);
    return response;
}

/// Whether the request should be sent again, now with an answer to the challenge of its reply.
bool Session::AnswerChallenge(const Response& i_response, DWORD i_status, Attempts& io_attempts) {
    TRACE_FUNCTION();
    const std::wstring uri = GetRequestUri(i_response.Handle());
    const std::wstring host = CrackUri(uri.c_str()).host; // After a redirect this is not the host that was asked.
    if (i_status == HTTP_STATUS_DENIED) {
        const auto challenges = i_response.GetHeaders(L"WWW-Authenticate");
        const auto oauth = std::ranges::find_if(challenges, IsOAuthChallenge);
        if (oauth != challenges.end())
            return AnswerOAuth(i_response, *oauth, io_attempts);
    } else if (i_status != HTTP_STATUS_PROXY_AUTH_REQ) {
        return false;
    }

    const bool is_proxy = i_status == HTTP_STATUS_PROXY_AUTH_REQ;
    const auto& credentials = is_proxy ? m_impl->proxy_credentials : m_impl->server_credentials;
    const auto found = credentials.find(host);
    if (found == credentials.end() || found->second.user_name.empty() || found->second.password.empty() ||
        !io_attempts.uris.insert(uri).second)
        return false;
    SetOption(i_response.Handle(), is_proxy ? INTERNET_OPTION_PROXY_USERNAME : INTERNET_OPTION_USERNAME,
              found->second.user_name);
    SetOption(i_response.Handle(), is_proxy ? INTERNET_OPTION_PROXY_PASSWORD : INTERNET_OPTION_PASSWORD,
              found->second.password);
    SkipBody(i_response.Handle());
    return true;
}

/// Takes the service's own authorization text. A repeated text, or too many of them, ends the call: a service may keep
/// challenging forever.
bool Session::AnswerOAuth(const Response& i_response, const std::wstring& i_challenge, Attempts& io_attempts) {
    TRACE_FUNCTION();
    const std::wstring authentication_header = i_challenge.substr(std::min(oauth_scheme.size(), i_challenge.size()));
    CHECK_THROW(!authentication_header.empty(), HttpException(i_response.Handle()));
    auto& answered = io_attempts.oauth_challenges;
    if (std::ranges::find(answered, i_challenge) != answered.end() || answered.size() + 1 >= max_oauth_challenges)
        return false;
    answered.push_back(i_challenge);
    SetAuthorizationHeader(L"Authorization:" + i_challenge + L"\n");
    SkipBody(i_response.Handle());
    return true;
}

Request Session::CreateRequest(const std::wstring& headers, std::uint64_t content_size) {
    TRACE_FUNCTION();
    CheckIsWanted();
    const wchar_t* accept_types[] = {L"*/*", nullptr};
    Request request;
    request.m_impl->handle = RequestHandle(HttpOpenRequestW(m_impl->connect_handle, L"POST", L"2/files/upload", nullptr,
                                                            nullptr, accept_types, RequestFlags(), 0));
    CHECK_THROW(request.m_impl->handle != nullptr, RequestFailure());
    const std::wstring all_headers = AuthorizationHeader() + headers;
    CHECK_THROW(HttpAddRequestHeadersW(request.m_impl->handle, all_headers.c_str(), -1,
                                       HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE),
                RequestFailure());
    const std::wstring length = L"content-length:" + std::to_wstring(content_size);
    CHECK_THROW(HttpAddRequestHeadersW(request.m_impl->handle, length.c_str(), -1,
                                       HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE),
                RequestFailure());
    CHECK_THROW(HttpSendRequestExW(request.m_impl->handle, nullptr, nullptr, 0, 0), RequestFailure());
    return request;
}

} // namespace Http
