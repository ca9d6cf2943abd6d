#pragma once

#include "qorv/Base.h"

#include <functional>
#include <string>
#include <string_view>

/// Follows the browser through the OAuth2 implicit grant: watches every completed navigation, takes the browser from
/// the end of the log-out to the consent page, and reads the token from the URL of the redirect receiver. No URL is
/// ever logged, because that one holds the token.
class SignInNavigation {
public:
    using NavigateFunction = std::function<HRESULT(const std::wstring& i_url)>;
    using CloseFunction = std::function<HRESULT()>;

    /// `i_navigate` makes the browser stop and load another page, `i_close` ends the dialog. The outputs must outlive
    /// this object; they are set together, when the sign-in is complete.
    SignInNavigation(NavigateFunction i_navigate, CloseFunction i_close, std::wstring_view i_client_id,
                     std::wstring& o_header, std::wstring& o_account_id);

    /// A page has been loaded in the main frame. E_FAIL for a null URL, for a redirect without the token or the account
    /// id, and when authorize pages only lead to each other: the dialog then stays open for the user to close.
    HRESULT OnNavigateComplete(const wchar_t* i_url);

private:
    HRESULT CompleteSignIn(std::wstring_view i_fragment) const;

    NavigateFunction m_navigate;
    CloseFunction m_close;
    std::wstring m_authorize_page;
    int m_authorize_pages = 0; ///< In a row, with no other page in between.
    std::wstring& m_header;
    std::wstring& m_account_id;
};
