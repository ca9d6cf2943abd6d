#pragma once

#include "browser/WebRequest.h"
#include "qorv/CoClass.h"

#include <ocidl.h>

#include <map>

namespace DevHost {

/// The browser's events (DWebBrowserEvents2) and their subscribers. Main thread only.
class BrowserEvents final : public Qorv::CoClass<BrowserEvents, IConnectionPoint> {
public:
    /// `i_browser` is the sender of the events. No reference is held; it calls `Close` before it is destroyed.
    explicit BrowserEvents(IDispatch* i_browser) noexcept : m_browser(i_browser) {}
    void Close() noexcept;

    /// Asks every sink; true if one of them cancels.
    bool FireBeforeNavigate(const WebRequest& i_request);
    void FireNavigateComplete(const std::wstring& i_url);
    /// `i_status` is the HTTP status, or the failure's code if no server answered.
    void FireNavigateError(const std::wstring& i_url, LONG i_status);
    void FireDocumentComplete(const std::wstring& i_url);

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** o_container) noexcept override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* i_sink, DWORD* o_cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD i_cookie) noexcept override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** o_connections) noexcept override;

private:
    void Fire(DISPID i_event, VARIANT* i_arguments, UINT i_count);
    void FireWithUrl(DISPID i_event, const std::wstring& i_url);

    IDispatch* m_browser;
    std::map<DWORD, Qorv::ComPtr<IDispatch>> m_sinks;
    DWORD m_last_cookie = 0;
};

} // namespace DevHost
