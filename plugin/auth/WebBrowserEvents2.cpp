#include "auth/WebBrowserEvents2.h"

#include "core/trace/Check.h"

#include <exdispid.h>

using Qorv::ComPtr;

namespace {

bool IsVariantReference(const VARIANT& i_argument) noexcept {
    TRACE_FUNCTION();
    return i_argument.vt == (VT_BYREF | VT_VARIANT) && i_argument.pvarVal != nullptr;
}

bool IsBoolReference(const VARIANT& i_argument) noexcept {
    TRACE_FUNCTION();
    return i_argument.vt == (VT_BYREF | VT_BOOL) && i_argument.pboolVal != nullptr;
}

/// The arguments of BeforeNavigate2. An event passes its arguments last to first.
enum BeforeNavigateArgument {
    Cancel,
    Headers,
    PostData,
    TargetFrame,
    Flags,
    Url,
    Browser,
    BeforeNavigateArgumentCount
};

bool AreBeforeNavigateArguments(const DISPPARAMS& i_parameters) noexcept {
    TRACE_FUNCTION();
    if (i_parameters.cArgs != BeforeNavigateArgumentCount || i_parameters.rgvarg == nullptr)
        return false;
    const VARIANT* arguments = i_parameters.rgvarg;
    for (const auto argument : {Url, Flags, TargetFrame, PostData, Headers})
        if (!IsVariantReference(arguments[argument]))
            return false;
    return arguments[Browser].vt == VT_DISPATCH && IsBoolReference(arguments[Cancel]);
}

/// The arguments of NavigateComplete2, also last to first.
enum NavigateCompleteArgument { FinalUrl, FinalBrowser, NavigateCompleteArgumentCount };

bool AreNavigateCompleteArguments(const DISPPARAMS& i_parameters) noexcept {
    TRACE_FUNCTION();
    return i_parameters.cArgs == NavigateCompleteArgumentCount && i_parameters.rgvarg != nullptr &&
           i_parameters.rgvarg[FinalBrowser].vt == VT_DISPATCH && IsVariantReference(i_parameters.rgvarg[FinalUrl]) &&
           i_parameters.rgvarg[FinalUrl].pvarVal->vt == VT_BSTR;
}

} // namespace

WebBrowserEvents2::WebBrowserEvents2(BeforeNavigateHandler i_before_navigate,
                                     NavigateCompleteHandler i_navigate_complete)
    : _before_navigate(std::move(i_before_navigate)), _navigate_complete(std::move(i_navigate_complete)) {
    TRACE_FUNCTION();
}

WebBrowserEvents2::~WebBrowserEvents2() {
    TRACE_FUNCTION();
}

HRESULT WebBrowserEvents2::Init(IWebBrowser2* i_web_browser) {
    TRACE_FUNCTION();
    CHECK_RETURN(_web_browser == nullptr && _cookie == 0, E_UNEXPECTED);
    CHECK_RETURN(i_web_browser != nullptr, E_INVALIDARG);
    ComPtr<IConnectionPointContainer> container;
    CHECK_HRESULT(i_web_browser->QueryInterface(&container));
    ComPtr<IConnectionPoint> connection_point;
    CHECK_HRESULT(container->FindConnectionPoint(__uuidof(DWebBrowserEvents2), &connection_point));
    DWORD cookie = 0;
    CHECK_HRESULT(connection_point->Advise(this, &cookie));
    _web_browser = i_web_browser;
    _connection_point = connection_point;
    _cookie = cookie;
    return TRACE_RESULT(S_OK);
}

void WebBrowserEvents2::Shutdown() noexcept {
    TRACE_FUNCTION();
    const ComPtr<WebBrowserEvents2> keep_alive(this); // The subscription may be the last to hold this object.
    if (_connection_point != nullptr)
        _connection_point->Unadvise(_cookie);
    _connection_point.Reset();
    _cookie = 0;
    _web_browser.Reset();
}

HRESULT STDMETHODCALLTYPE WebBrowserEvents2::Invoke(DISPID i_event, REFIID, LCID, WORD, DISPPARAMS* i_parameters,
                                                    VARIANT*, EXCEPINFO*, UINT*) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        if (i_event != DISPID_BEFORENAVIGATE2 && i_event != DISPID_NAVIGATECOMPLETE2)
            return TRACE_RESULT(S_OK);
        CHECK_RETURN(i_parameters != nullptr, E_INVALIDARG);
        // A handler may end the dialog: neither this object nor the browser may be destroyed before the event is over.
        const ComPtr<WebBrowserEvents2> keep_alive(this);
        const ComPtr<IWebBrowser2> keep_browser(_web_browser);
        const HRESULT result =
            i_event == DISPID_BEFORENAVIGATE2 ? OnBeforeNavigate(*i_parameters) : OnNavigateComplete(*i_parameters);
        CHECK_HRESULT(result);
        return TRACE_RESULT(S_OK);
    };
}

/// A page's frames fire the same events, each from its own object: an advertisement must not drive the dialog. COM
/// objects are the same if they have the same IUnknown.
bool WebBrowserEvents2::IsMainFrame(IDispatch* i_browser) const noexcept {
    TRACE_FUNCTION();
    if (i_browser == nullptr || _web_browser == nullptr)
        return true; // Then no other object fires.
    ComPtr<IUnknown> browser;
    ComPtr<IUnknown> main_browser;
    return SUCCEEDED(i_browser->QueryInterface(&browser)) && SUCCEEDED(_web_browser->QueryInterface(&main_browser)) &&
           browser == main_browser;
}

HRESULT WebBrowserEvents2::OnBeforeNavigate(const DISPPARAMS& i_parameters) const {
    TRACE_FUNCTION();
    CHECK_RETURN(AreBeforeNavigateArguments(i_parameters), E_INVALIDARG);
    if (_before_navigate == nullptr)
        return TRACE_RESULT(S_OK);
    const VARIANT* arguments = i_parameters.rgvarg;
    VARIANT_BOOL& answer = *arguments[Cancel].pboolVal;
    bool is_canceled = answer != VARIANT_FALSE;
    const HRESULT result = _before_navigate(arguments[Browser].pdispVal, *arguments[Url].pvarVal,
                                            *arguments[Flags].pvarVal, *arguments[TargetFrame].pvarVal,
                                            *arguments[PostData].pvarVal, *arguments[Headers].pvarVal, is_canceled);
    answer = is_canceled ? VARIANT_TRUE : VARIANT_FALSE;
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}

HRESULT WebBrowserEvents2::OnNavigateComplete(const DISPPARAMS& i_parameters) const {
    TRACE_FUNCTION();
    CHECK_RETURN(AreNavigateCompleteArguments(i_parameters), E_INVALIDARG);
    if (_navigate_complete == nullptr || !IsMainFrame(i_parameters.rgvarg[FinalBrowser].pdispVal))
        return TRACE_RESULT(S_OK);
    const HRESULT result = _navigate_complete(i_parameters.rgvarg[FinalUrl].pvarVal->bstrVal);
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}
