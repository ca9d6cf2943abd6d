#include "browser/WebFetch.h"

#include "base/Failure.h"
#include "browser/Url.h"

#include <wininet.h>

#include <array>
#include <memory>

namespace DevHost {
namespace {

constexpr int max_redirects = 20;
constexpr std::size_t max_body_size = 1 << 20; // The pages are small; more is cut off.
constexpr DWORD timeout_in_ms = 30000;
constexpr wchar_t what[] = L"Cannot load the page";

struct CloseInternetHandle {
    void operator()(HINTERNET i_handle) const noexcept { InternetCloseHandle(i_handle); }
};
using InternetHandle = std::unique_ptr<void, CloseInternetHandle>;

InternetHandle Opened(HINTERNET i_handle) {
    if (i_handle == nullptr)
        throw LastErrorFailure(what);
    return InternetHandle(i_handle);
}

/// An address in the parts that WinINet takes. The fragment is not sent.
struct Target {
    std::wstring host;
    std::wstring object;
    INTERNET_PORT port = 0;
    bool is_secure = false;
};

Target TargetOf(const Url& i_url) {
    if (!i_url.IsWeb())
        throw Failure(E_INVALIDARG, L"This isn't the address of a web page");
    const std::wstring address = i_url.WithoutFragment().Text();
    URL_COMPONENTSW parts{};
    parts.dwStructSize = sizeof(parts);
    parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = static_cast<DWORD>(-1);
    if (!InternetCrackUrlW(address.c_str(), static_cast<DWORD>(address.size()), 0, &parts) ||
        parts.dwHostNameLength == 0)
        throw Failure(E_INVALIDARG, L"The address of the page is invalid");
    std::wstring object(parts.lpszUrlPath, parts.dwUrlPathLength);
    object.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
    if (!object.starts_with(L'/'))
        object.insert(0, 1, L'/');
    return {{parts.lpszHostName, parts.dwHostNameLength}, object, parts.nPort, parts.nScheme == INTERNET_SCHEME_HTTPS};
}

/// One request and its reply.
class Exchange {
public:
    Exchange(HINTERNET i_session, const Target& i_target, const WebRequest& i_request)
        : m_connection(Opened(InternetConnectW(i_session, i_target.host.c_str(), i_target.port, nullptr, nullptr,
                                               INTERNET_SERVICE_HTTP, 0, 0)))
        , m_request(Open(i_target, i_request.is_post)) {
        constexpr std::wstring_view form = L"Content-Type: application/x-www-form-urlencoded\r\n";
        std::string body = i_request.body;
        if (!HttpSendRequestW(m_request.get(), i_request.is_post ? form.data() : nullptr,
                              i_request.is_post ? static_cast<DWORD>(form.size()) : 0,
                              i_request.is_post ? body.data() : nullptr, static_cast<DWORD>(body.size())))
            throw LastErrorFailure(what);
    }

    DWORD Status() const {
        DWORD status = 0;
        DWORD size = sizeof(status);
        if (!HttpQueryInfoW(m_request.get(), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size, nullptr))
            throw LastErrorFailure(what);
        return status;
    }

    /// A header's value, of any length; empty if the reply has no such header.
    std::wstring Header(DWORD i_header) const {
        DWORD size = 0;
        HttpQueryInfoW(m_request.get(), i_header, nullptr, &size, nullptr);
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER)
            return {};
        std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
        size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
        if (!HttpQueryInfoW(m_request.get(), i_header, value.data(), &size, nullptr))
            return {};
        value.resize(size / sizeof(wchar_t));
        return value;
    }

    std::string Body(const std::atomic<bool>& i_is_stopped) const {
        std::string body;
        std::array<char, 16384> piece;
        for (DWORD read = 1; read != 0 && body.size() < max_body_size && !i_is_stopped;) {
            if (!InternetReadFile(m_request.get(), piece.data(), DWORD{piece.size()}, &read))
                throw LastErrorFailure(what);
            body.append(piece.data(), read);
        }
        return body;
    }

private:
    InternetHandle Open(const Target& i_target, bool i_is_post) const {
        constexpr DWORD flags = INTERNET_FLAG_NO_AUTO_REDIRECT | INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE |
                                INTERNET_FLAG_PRAGMA_NOCACHE | INTERNET_FLAG_NO_UI | INTERNET_FLAG_KEEP_CONNECTION;
        std::array<PCWSTR, 3> accepted = {L"text/html", L"*/*", nullptr};
        return Opened(HttpOpenRequestW(m_connection.get(), i_is_post ? L"POST" : L"GET", i_target.object.c_str(),
                                       nullptr, nullptr, accepted.data(),
                                       i_target.is_secure ? flags | INTERNET_FLAG_SECURE : flags, 0));
    }

    InternetHandle m_connection;
    InternetHandle m_request;
};

InternetHandle OpenSession() {
    InternetHandle session = Opened(InternetOpenW(L"qorvhost", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    DWORD timeout = timeout_in_ms;
    InternetSetOptionW(session.get(), INTERNET_OPTION_CONNECT_TIMEOUT, &timeout, sizeof(timeout));
    InternetSetOptionW(session.get(), INTERNET_OPTION_RECEIVE_TIMEOUT, &timeout, sizeof(timeout));
    return session;
}

/// Where a reply redirects to; empty if it doesn't.
std::wstring RedirectOf(DWORD i_status, const Exchange& i_exchange) {
    const bool is_redirect = i_status == HTTP_STATUS_MOVED || i_status == HTTP_STATUS_REDIRECT ||
                             i_status == HTTP_STATUS_REDIRECT_METHOD || i_status == HTTP_STATUS_REDIRECT_KEEP_VERB ||
                             i_status == HTTP_STATUS_PERMANENT_REDIRECT;
    return is_redirect ? i_exchange.Header(HTTP_QUERY_LOCATION) : std::wstring();
}

/// A new address without a fragment keeps the old one's. Only two kinds of redirect send a form again.
void Follow(WebRequest& io_request, const std::wstring& i_location, DWORD i_status) {
    const Url old_url(io_request.url);
    const Url new_url = old_url.WithoutFragment().Resolve(i_location);
    io_request.url = (new_url.Fragment().empty() ? new_url.WithFragment(old_url.Fragment()) : new_url).Text();
    if (i_status == HTTP_STATUS_REDIRECT_KEEP_VERB || i_status == HTTP_STATUS_PERMANENT_REDIRECT)
        return;
    io_request.is_post = false;
    io_request.body.clear();
}

void Fetch(WebRequest& io_request, WebReply& o_reply, const std::atomic<bool>& i_is_stopped) {
    const InternetHandle session = OpenSession();
    for (int redirects = 0; !i_is_stopped; ++redirects) {
        const Exchange exchange(session.get(), TargetOf(Url(io_request.url)), io_request);
        const DWORD status = exchange.Status();
        const std::wstring location = RedirectOf(status, exchange);
        if (location.empty()) {
            o_reply.status = status;
            o_reply.content_type = exchange.Header(HTTP_QUERY_CONTENT_TYPE);
            o_reply.body = exchange.Body(i_is_stopped);
            return;
        }
        if (redirects == max_redirects)
            throw Failure(HRESULT_FROM_WIN32(ERROR_HTTP_REDIRECT_FAILED), L"The page leads in circles");
        Follow(io_request, location, status);
    }
    throw Failure(E_ABORT, L"The load was stopped");
}

} // namespace

WebReply FetchFromWeb(const WebRequest& i_request, const std::atomic<bool>& i_is_stopped) {
    WebRequest request = i_request;
    WebReply reply;
    reply.result = Answer([&] { Fetch(request, reply, i_is_stopped); });
    reply.url = request.url;
    return reply;
}

} // namespace DevHost
