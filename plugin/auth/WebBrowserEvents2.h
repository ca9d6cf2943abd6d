#pragma once

#include "qorv/CoClass.h"

#include <exdisp.h>
#include <ocidl.h>

#include <functional>

/// A navigation is about to begin. The handler may set the argument that cancels it. The arguments are the event's own
/// (see the documentation of DWebBrowserEvents2) and valid during the call.
using BeforeNavigateHandler = std::function<HRESULT(IDispatch* i_browser, const VARIANT& i_url, const VARIANT& i_flags,
                                                    const VARIANT& i_target_frame, const VARIANT& i_post_data,
                                                    const VARIANT& i_headers, bool& io_is_canceled)>;

/// A page has been loaded in the browser's main frame. The URL is null if the browser provides none.
using NavigateCompleteHandler = std::function<HRESULT(const wchar_t* i_url)>;

/// Receives the events of a browser control and passes the navigations on; a handler's code is the event's result. Main
/// thread.
class WebBrowserEvents2 final : public Qorv::CoClass<WebBrowserEvents2, DWebBrowserEvents2> {
public:
    /// Empty handlers are not called.
    WebBrowserEvents2(BeforeNavigateHandler i_before_navigate, NavigateCompleteHandler i_navigate_complete);
    ~WebBrowserEvents2();

    /// Subscribes to a browser's events. The two hold each other until `Shutdown`.
    HRESULT Init(IWebBrowser2* i_web_browser);

    /// Ends the subscription and releases the browser. May be called from inside an event, and more than once.
    void Shutdown() noexcept;

    HRESULT STDMETHODCALLTYPE Invoke(DISPID i_event, REFIID i_reserved, LCID i_locale, WORD i_flags,
                                     DISPPARAMS* i_parameters, VARIANT* o_result, EXCEPINFO* o_exception,
                                     UINT* o_argument) noexcept override;

private:
    bool IsMainFrame(IDispatch* i_browser) const noexcept;
    HRESULT OnBeforeNavigate(const DISPPARAMS& i_parameters) const;
    HRESULT OnNavigateComplete(const DISPPARAMS& i_parameters) const;

    const BeforeNavigateHandler _before_navigate;
    const NavigateCompleteHandler _navigate_complete;
    Qorv::ComPtr<IWebBrowser2> _web_browser;
    Qorv::ComPtr<IConnectionPoint> _connection_point;
    DWORD _cookie = 0;
};
