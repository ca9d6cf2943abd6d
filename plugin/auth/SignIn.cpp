#include "auth/SignIn.h"

#include "auth/SignInNavigation.h"
#include "auth/WebBrowserDialog.h"
#include "core/trace/Check.h"

HRESULT AuthenticateDropboxOAuth2(Qorv::IQorv_Inst* host_instance, const std::wstring& client_id,
                                  std::wstring& o_header, std::wstring& o_account_id) {
    TRACE_FUNCTION();
    o_header.clear();
    o_account_id.clear();
    const auto dialog = Qorv::Create<Qorv::WebBrowserDialog>(host_instance);
    CHECK_RETURN(dialog != nullptr, E_OUTOFMEMORY);
    // The dialog lets go of the handler before `DoModal` returns: the handler refers to it plainly, without a circle.
    const SignInNavigation navigation([&](const std::wstring& i_url) { return dialog->Navigate(i_url); },
                                      [&] { return dialog->EndModal(); }, client_id, o_header, o_account_id);
    const HRESULT result =
        dialog->DoModal({}, [&](const wchar_t* i_url) { return navigation.OnNavigateComplete(i_url); });
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}
