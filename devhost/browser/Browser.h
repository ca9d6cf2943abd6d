#pragma once

#include "browser/BrowserEvents.h"
#include "browser/OleObjectStub.h"
#include "browser/PageLoader.h"
#include "browser/PageView.h"
#include "browser/WebBrowserStub.h"
#include "qorv/CoClass.h"

#include <memory>
#include <optional>

namespace DevHost {

/// A small browser with those interfaces and events of the system's WebBrowser control that a sign-in needs. It keeps
/// no history and runs no scripts. Main thread only.
///
/// A navigation begins after the call that requests it has returned, so event handlers may request or stop one. Its
/// events: BeforeNavigate2 for each requested address (not for redirects); NavigateComplete2 once a server has
/// answered, with the last address, before the page is shown; DocumentComplete when it is shown. When no server
/// answers: NavigateError, and a page that says why.
class Browser final : public Qorv::CoClass<Browser, WebBrowserStub, OleObjectStub, IOleInPlaceObject,
                                           IOleInPlaceActiveObject, IConnectionPointContainer, IPersistStorage> {
public:
    Browser();
    ~Browser();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID i_id, void** o_object) noexcept override;

    // IWebBrowser2
    HRESULT STDMETHODCALLTYPE Navigate(BSTR i_url, VARIANT* i_flags, VARIANT* i_frame, VARIANT* i_data,
                                       VARIANT* i_headers) noexcept override;
    HRESULT STDMETHODCALLTYPE Navigate2(VARIANT* i_url, VARIANT* i_flags, VARIANT* i_frame, VARIANT* i_data,
                                        VARIANT* i_headers) noexcept override;
    HRESULT STDMETHODCALLTYPE Refresh() noexcept override;
    HRESULT STDMETHODCALLTYPE Stop() noexcept override;
    HRESULT STDMETHODCALLTYPE get_LocationName(BSTR* o_title) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LocationURL(BSTR* o_url) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Busy(VARIANT_BOOL* o_is_busy) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ReadyState(READYSTATE* o_state) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Silent(VARIANT_BOOL* o_is_silent) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Silent(VARIANT_BOOL i_is_silent) noexcept override;

    // IOleObject
    HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* i_site) noexcept override;
    HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** o_site) noexcept override;
    HRESULT STDMETHODCALLTYPE Close(DWORD i_save_option) noexcept override;
    HRESULT STDMETHODCALLTYPE DoVerb(LONG i_verb, MSG* i_message, IOleClientSite* i_site, LONG i_index, HWND i_parent,
                                     const RECT* i_place) noexcept override;
    HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE SetExtent(DWORD i_aspect, SIZEL* i_size) noexcept override;
    HRESULT STDMETHODCALLTYPE GetExtent(DWORD i_aspect, SIZEL* o_size) noexcept override;

    // IOleInPlaceObject, IOleInPlaceActiveObject
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* o_window) noexcept override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL i_is_on) noexcept override;
    HRESULT STDMETHODCALLTYPE InPlaceDeactivate() noexcept override;
    HRESULT STDMETHODCALLTYPE UIDeactivate() noexcept override;
    HRESULT STDMETHODCALLTYPE SetObjectRects(const RECT* i_place, const RECT* i_clip) noexcept override;
    HRESULT STDMETHODCALLTYPE ReactivateAndUndo() noexcept override;
    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* i_message) noexcept override;
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL i_is_active) noexcept override;
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL i_is_active) noexcept override;
    HRESULT STDMETHODCALLTYPE ResizeBorder(const RECT* i_border, IOleInPlaceUIWindow* i_window,
                                           BOOL i_is_frame) noexcept override;
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL i_is_on) noexcept override;

    // IConnectionPointContainer
    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** o_points) noexcept override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID i_id, IConnectionPoint** o_point) noexcept override;

    // IPersistStorage: there is nothing to store.
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
    HRESULT STDMETHODCALLTYPE InitNew(IStorage* i_storage) noexcept override;
    HRESULT STDMETHODCALLTYPE Load(IStorage* i_storage) noexcept override;
    HRESULT STDMETHODCALLTYPE Save(IStorage* i_storage, BOOL i_is_same) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* i_storage) noexcept override;
    HRESULT STDMETHODCALLTYPE HandsOffStorage() noexcept override;

private:
    HRESULT Activate(IOleClientSite* i_site, HWND i_parent, const RECT& i_place);
    void Request(WebRequest i_request);
    void OnMessage(UINT i_message);
    void BeginNavigation();
    void OnLoaded();
    void ShowPage(Page i_page, const std::wstring& i_url);
    bool IsBusy() const noexcept;

    Qorv::ComPtr<BrowserEvents> m_events;
    Qorv::ComPtr<IOleClientSite> m_site;
    std::unique_ptr<PageView> m_view;      ///< While the browser is active in its container.
    std::unique_ptr<PageLoader> m_loader;  ///< Lives with the view.
    std::optional<WebRequest> m_requested; ///< The next navigation.
    std::wstring m_url;                    ///< Of the current page.
    std::wstring m_title;
    SIZEL m_extent{}; ///< In hundredths of a millimetre.
    VARIANT_BOOL m_is_silent = VARIANT_FALSE;
};

} // namespace DevHost
