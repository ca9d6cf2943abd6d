#include "base/Failure.h"
#include "browser/Browser.h"

#include <olectl.h>

// The browser's OLE object interfaces. What the browser does is in Browser.cpp.

namespace DevHost {

/// The co-class knows only the interfaces themselves, not their bases.
HRESULT STDMETHODCALLTYPE Browser::QueryInterface(REFIID i_id, void** o_object) noexcept {
    if (i_id == IID_IWebBrowser || i_id == IID_IWebBrowserApp)
        return CoClass::QueryInterface(IID_IWebBrowser2, o_object);
    if (i_id == IID_IOleWindow)
        return CoClass::QueryInterface(IID_IOleInPlaceObject, o_object);
    if (i_id == IID_IPersist)
        return CoClass::QueryInterface(IID_IPersistStorage, o_object);
    return CoClass::QueryInterface(i_id, o_object);
}

HRESULT STDMETHODCALLTYPE Browser::SetClientSite(IOleClientSite* i_site) noexcept {
    m_site = i_site;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::GetClientSite(IOleClientSite** o_site) noexcept {
    if (o_site == nullptr)
        return E_POINTER;
    *o_site = Qorv::ComPtr<IOleClientSite>(m_site).Detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::Close(DWORD /*i_save_option*/) noexcept {
    const Qorv::ComPtr<Browser> self(this);
    InPlaceDeactivate();
    m_requested.reset();
    CoDisconnectObject(static_cast<IOleObject*>(this), 0); // A container's lock (OleLockRunning) ends here too.
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::DoVerb(LONG i_verb, MSG* /*i_message*/, IOleClientSite* i_site, LONG /*i_index*/,
                                          HWND i_parent, const RECT* i_place) noexcept {
    switch (i_verb) {
    case OLEIVERB_PRIMARY:
    case OLEIVERB_SHOW:
    case OLEIVERB_UIACTIVATE:
    case OLEIVERB_INPLACEACTIVATE:
        if (m_view != nullptr)
            return S_OK;
        if (i_site == nullptr || i_place == nullptr)
            return E_INVALIDARG;
        return Answer([&] { return Activate(i_site, i_parent, *i_place); });
    case OLEIVERB_HIDE:
        return InPlaceDeactivate();
    default:
        return OLEOBJ_S_INVALIDVERB;
    }
}

HRESULT STDMETHODCALLTYPE Browser::GetUserClassID(CLSID* o_id) noexcept {
    if (o_id == nullptr)
        return E_POINTER;
    *o_id = CLSID_WebBrowser;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::SetExtent(DWORD i_aspect, SIZEL* i_size) noexcept {
    if (i_size == nullptr)
        return E_POINTER;
    if (i_aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    m_extent = *i_size;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::GetExtent(DWORD i_aspect, SIZEL* o_size) noexcept {
    if (o_size == nullptr)
        return E_POINTER;
    if (i_aspect != DVASPECT_CONTENT)
        return DV_E_DVASPECT;
    *o_size = m_extent;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::GetWindow(HWND* o_window) noexcept {
    if (o_window == nullptr)
        return E_POINTER;
    *o_window = m_view != nullptr ? m_view->Window() : nullptr;
    return *o_window != nullptr ? S_OK : E_FAIL;
}

HRESULT STDMETHODCALLTYPE Browser::ContextSensitiveHelp(BOOL /*i_is_on*/) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Browser::UIDeactivate() noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::SetObjectRects(const RECT* i_place, const RECT* /*i_clip*/) noexcept {
    if (i_place == nullptr)
        return E_POINTER;
    if (m_view != nullptr)
        MoveWindow(m_view->Window(), static_cast<int>(i_place->left), static_cast<int>(i_place->top),
                   static_cast<int>(i_place->right - i_place->left), static_cast<int>(i_place->bottom - i_place->top),
                   TRUE);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::ReactivateAndUndo() noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Browser::TranslateAccelerator(MSG* i_message) noexcept {
    if (i_message == nullptr)
        return E_POINTER;
    const Qorv::ComPtr<Browser> self(this);
    return Answer([&] { return m_view != nullptr && m_view->TranslateKey(*i_message) ? S_OK : S_FALSE; });
}

HRESULT STDMETHODCALLTYPE Browser::OnFrameWindowActivate(BOOL /*i_is_active*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::OnDocWindowActivate(BOOL /*i_is_active*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::ResizeBorder(const RECT* /*i_border*/, IOleInPlaceUIWindow* /*i_window*/,
                                                BOOL /*i_is_frame*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::EnableModeless(BOOL /*i_is_on*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::EnumConnectionPoints(IEnumConnectionPoints** o_points) noexcept {
    if (o_points == nullptr)
        return E_POINTER;
    *o_points = nullptr;
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE Browser::FindConnectionPoint(REFIID i_id, IConnectionPoint** o_point) noexcept {
    if (o_point == nullptr)
        return E_POINTER;
    *o_point = nullptr;
    if (i_id != DIID_DWebBrowserEvents2)
        return CONNECT_E_NOCONNECTION;
    *o_point = Qorv::ComPtr<IConnectionPoint>(m_events).Detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::GetClassID(CLSID* o_id) noexcept {
    return GetUserClassID(o_id);
}

HRESULT STDMETHODCALLTYPE Browser::IsDirty() noexcept {
    return S_FALSE;
}

HRESULT STDMETHODCALLTYPE Browser::InitNew(IStorage* /*i_storage*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::Load(IStorage* /*i_storage*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::Save(IStorage* /*i_storage*/, BOOL /*i_is_same*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::SaveCompleted(IStorage* /*i_storage*/) noexcept {
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::HandsOffStorage() noexcept {
    return S_OK;
}

} // namespace DevHost
