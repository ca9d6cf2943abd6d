#include "auth/WebBrowserControl.h"

#include "core/trace/Check.h"
#include "qorv/Values.h"

#include <utility>

using Qorv::ComPtr;

namespace {

/// Converts the size of a rectangle from pixels to hundredths of a millimetre, as OLE requires.
SIZEL ExtentOf(const RECT& i_rect) noexcept {
    TRACE_FUNCTION();
    constexpr int units_per_inch = 2540;
    const HDC screen = GetDC(nullptr);
    const SIZEL extent{MulDiv(i_rect.right - i_rect.left, units_per_inch, GetDeviceCaps(screen, LOGPIXELSX)),
                       MulDiv(i_rect.bottom - i_rect.top, units_per_inch, GetDeviceCaps(screen, LOGPIXELSY))};
    ReleaseDC(nullptr, screen);
    return extent;
}

} // namespace

WebBrowserControl::WebBrowserControl() {
    TRACE_FUNCTION();
}

WebBrowserControl::~WebBrowserControl() {
    TRACE_FUNCTION();
}

HRESULT WebBrowserControl::Init(HWND i_parent_window, const RECT& rect) {
    TRACE_FUNCTION();
    CHECK_RETURN(i_parent_window != nullptr, E_INVALIDARG);
    _parent_window = i_parent_window;
    _rect = rect;
    CHECK_HRESULT(
        OleCreate(CLSID_WebBrowser, IID_IOleObject, OLERENDER_DRAW, nullptr, this, this, (void**)&_ole_object));
    CHECK_HRESULT(_ole_object->SetClientSite(this));
    CHECK_HRESULT(OleSetContainedObject(_ole_object, TRUE));
    CHECK_HRESULT(_ole_object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, -1, _parent_window, &rect));
    CHECK_HRESULT(_ole_object->QueryInterface(&_web_browser2));
    CHECK_HRESULT(_web_browser2->put_Silent(VARIANT_TRUE));
    ShowWindow(GetControl(), SW_SHOW); // Returns whether it was visible before, not an error.
    // Gives the page the keyboard focus. If this fails, the user has to click on the page first, which is not an error.
    _ole_object->DoVerb(OLEIVERB_UIACTIVATE, nullptr, this, -1, _parent_window, &rect);
    return TRACE_RESULT(S_OK);
}

HRESULT WebBrowserControl::SetRect(const RECT& i_rect) {
    TRACE_FUNCTION();
    _rect = i_rect;
    if (_ole_object == nullptr || _ole_in_place_object == nullptr)
        return TRACE_RESULT(S_OK); // The browser asks for it when it is activated.
    SIZEL size = ExtentOf(_rect);
    CHECK_HRESULT(_ole_object->SetExtent(DVASPECT_CONTENT, &size));
    CHECK_HRESULT(_ole_in_place_object->SetObjectRects(&_rect, &_rect));
    return TRACE_RESULT(S_OK);
}

HRESULT WebBrowserControl::Navigate(const std::wstring& i_url) {
    TRACE_FUNCTION();
    CHECK_RETURN(_web_browser2 != nullptr, E_UNEXPECTED);
    Qorv::Variant url{Qorv::Bstr(i_url)};
    CHECK_RETURN(url->bstrVal != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(_web_browser2->Navigate2(&url.m_value, nullptr, nullptr, nullptr, nullptr));
    return TRACE_RESULT(S_OK);
}

IWebBrowser2* WebBrowserControl::GetBrowser() const noexcept {
    TRACE_FUNCTION();
    return _web_browser2;
}

/// The browser's window; null without one.
HWND WebBrowserControl::GetControl() const noexcept {
    TRACE_FUNCTION();
    HWND window = nullptr;
    if (_ole_in_place_object == nullptr || FAILED(_ole_in_place_object->GetWindow(&window)))
        return nullptr;
    return window;
}

void WebBrowserControl::Close() noexcept {
    TRACE_FUNCTION();
    const ComPtr<WebBrowserControl> keep_alive(this); // The browser may be the last to hold this object.
    if (const auto in_place_object = _ole_in_place_object)
        in_place_object->InPlaceDeactivate();
    UnlockRunning();
    _ole_in_place_object.Reset();
    _web_browser2.Reset();
    const ComPtr<IOleObject> ole_object = std::move(_ole_object);
    if (ole_object == nullptr)
        return;
    ole_object->Close(OLECLOSE_NOSAVE);
    ole_object->SetClientSite(nullptr);
}

/// Without this the lock would keep the browser alive after the last reference.
void WebBrowserControl::UnlockRunning() noexcept {
    TRACE_FUNCTION();
    if (std::exchange(_is_locked, false))
        OleLockRunning(_ole_object, FALSE, FALSE);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::GetWindow(HWND* o_window) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_window != nullptr, E_INVALIDARG);
    *o_window = _parent_window;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnInPlaceActivate() noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(_ole_object != nullptr, E_UNEXPECTED);
    CHECK_RETURN(SUCCEEDED(OleLockRunning(_ole_object, TRUE, FALSE)), E_UNEXPECTED);
    _is_locked = true;
    CHECK_RETURN(SUCCEEDED(_ole_object->QueryInterface(&_ole_in_place_object)), E_UNEXPECTED);
    CHECK_RETURN(SUCCEEDED(_ole_in_place_object->SetObjectRects(&_rect, &_rect)), E_UNEXPECTED);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::OnInPlaceDeactivate() noexcept {
    TRACE_FUNCTION();
    UnlockRunning();
    _ole_in_place_object.Reset();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE WebBrowserControl::GetWindowContext(IOleInPlaceFrame** o_frame,
                                                              IOleInPlaceUIWindow** o_document_window, RECT* o_rect,
                                                              RECT* o_clip_rect,
                                                              OLEINPLACEFRAMEINFO* io_frame_info) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_frame != nullptr, E_INVALIDARG);
    CHECK_RETURN(o_document_window != nullptr, E_INVALIDARG);
    CHECK_RETURN(o_rect != nullptr, E_INVALIDARG);
    CHECK_RETURN(o_clip_rect != nullptr, E_INVALIDARG);
    CHECK_RETURN(io_frame_info != nullptr, E_INVALIDARG);
    *o_frame = nullptr;
    *o_document_window = nullptr;
    *o_rect = _rect;
    *o_clip_rect = _rect;
    io_frame_info->fMDIApp = FALSE;
    io_frame_info->hwndFrame = _parent_window;
    io_frame_info->haccel = nullptr;
    io_frame_info->cAccelEntries = 0;
    return TRACE_RESULT(S_OK);
}
