#include "auth/SignIn.h"

#include "auth/SignInNavigation.h"
#include "auth/WebBrowserDialog.h"
#include "core/trace/Check.h"

namespace {

/// Initialises OLE on this thread for the browser, if the host has not done so already.
class OleScope {
public:
    OleScope() noexcept : m_result(OleInitialize(nullptr)) { TRACE_FUNCTION(); }
    OleScope(const OleScope&) = delete;
    OleScope& operator=(const OleScope&) = delete;
    ~OleScope() {
        TRACE_FUNCTION();
        if (SUCCEEDED(m_result))
            OleUninitialize();
    }
    HRESULT Result() const noexcept {
        TRACE_FUNCTION();
        return m_result;
    }

private:
    const HRESULT m_result;
};

} // namespace

HRESULT AuthenticateDropboxOAuth2(Qorv::IQorv_Inst* host_instance, const std::wstring& client_id,
                                  std::wstring& o_header, std::wstring& o_account_id) {
    TRACE_FUNCTION();
    o_header.clear();
    o_account_id.clear();
    const OleScope ole;
    CHECK_HRESULT(ole.Result());
    const auto dialog = Qorv::Create<Qorv::WebBrowserDialog>(host_instance);
    CHECK_RETURN(dialog != nullptr, E_OUTOFMEMORY);
    // The dialog releases the handler before `DoModal` returns, so the handler may hold a plain reference without a
    // cycle.
    SignInNavigation navigation([&](const std::wstring& i_url) { return dialog->Navigate(i_url); },
                                [&] { return dialog->EndModal(); }, client_id, o_header, o_account_id);
    const HRESULT result =
        dialog->DoModal({}, [&](const wchar_t* i_url) { return navigation.OnNavigateComplete(i_url); });
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}
