#include "auth/SignInNavigation.h"

#include "auth/ServicePage.h"
#include "core/trace/Check.h"
#include "core/trace/Text.h"

#include <algorithm>

namespace {

constexpr wchar_t login_path[] = L"/login";
constexpr wchar_t home_path[] = L"/";
constexpr wchar_t authorize_path[] = L"/oauth2/authorize?response_type=token&client_id=";
constexpr wchar_t redirect_parameter[] = L"&redirect_uri=";
constexpr wchar_t redirect_receiver_path[] = L"/1/oauth2/redirect_receiver";

/// If every authorize page leads back to the log-in page, the loop has to end somewhere.
constexpr int max_authorize_pages = 20;

constexpr std::wstring_view token_key = L"access_token=";
constexpr std::wstring_view account_key = L"account_id=";
constexpr wchar_t header_prefix[] = L"Authorization:Bearer "; // No space after the colon: it is sent like this.

/// The redirect URL is not escaped: it is registered with the service like this.
std::wstring AuthorizePage(std::wstring_view i_client_id) {
    TRACE_FUNCTION();
    return ServicePage(authorize_path).append(i_client_id) + redirect_parameter + ServicePage(redirect_receiver_path);
}

bool BeginsWith(std::wstring_view i_url, const std::wstring& i_page) noexcept {
    TRACE_FUNCTION();
    return StringCompare(i_page, i_url, static_cast<int>(i_page.size())) == 0;
}

/// What follows the first occurrence of the key, up to the next "&", without decoding. Empty if the key is missing.
std::wstring_view ValueOf(std::wstring_view i_key, std::wstring_view i_fragment) noexcept {
    TRACE_FUNCTION();
    const std::size_t key = i_fragment.find(i_key);
    if (key == std::wstring_view::npos)
        return {};
    const std::wstring_view rest = i_fragment.substr(key + i_key.size());
    return rest.substr(0, rest.find(L'&'));
}

} // namespace

SignInNavigation::SignInNavigation(NavigateFunction i_navigate, CloseFunction i_close, std::wstring_view i_client_id,
                                   std::wstring& o_header, std::wstring& o_account_id)
    : m_navigate(std::move(i_navigate))
    , m_close(std::move(i_close))
    , m_authorize_page(AuthorizePage(i_client_id))
    , m_header(o_header)
    , m_account_id(o_account_id) {
    TRACE_FUNCTION();
}

HRESULT SignInNavigation::OnNavigateComplete(const wchar_t* i_url) {
    TRACE_FUNCTION();
    CHECK_RETURN(i_url != nullptr, E_FAIL);
    const std::wstring_view url(i_url);
    // The log-out leads to one of these two. Only the whole URL distinguishes the home page from other pages.
    if (BeginsWith(url, ServicePage(login_path)) || EqualsNoCase(url, ServicePage(home_path))) {
        CHECK_RETURN(m_authorize_pages < max_authorize_pages, E_FAIL);
        ++m_authorize_pages;
        CHECK_HRESULT(m_navigate(m_authorize_page));
        return TRACE_RESULT(S_OK);
    }
    if (!BeginsWith(url, m_authorize_page))
        m_authorize_pages = 0;
    const std::wstring redirect_receiver = ServicePage(redirect_receiver_path);
    if (!BeginsWith(url, redirect_receiver))
        return TRACE_RESULT(S_OK);
    const std::wstring_view fragment = url.substr(std::min(redirect_receiver.size(), url.size()));
    CHECK_HRESULT(CompleteSignIn(fragment));
    return TRACE_RESULT(S_OK);
}

HRESULT SignInNavigation::CompleteSignIn(std::wstring_view i_fragment) const {
    TRACE_FUNCTION();
    const std::wstring_view token = ValueOf(token_key, i_fragment);
    CHECK_RETURN(!token.empty(), E_FAIL);
    const std::wstring_view account_id = ValueOf(account_key, i_fragment);
    CHECK_RETURN(!account_id.empty(), E_FAIL);
    m_header = std::wstring(header_prefix).append(token);
    m_account_id = account_id;
    CHECK_HRESULT(m_close());
    return TRACE_RESULT(S_OK);
}
