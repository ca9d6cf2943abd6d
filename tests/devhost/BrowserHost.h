#pragma once

#include "qorv/CoClass.h"

#include <exdisp.h>
#include <ocidl.h>
#include <oleidl.h>

#include <functional>
#include <string>
#include <vector>

namespace Tests {

/// A container for the WebBrowser control in a window, and the sink for its events: it records them and runs what a
/// test provides.
class BrowserHost final : public Qorv::CoClass<BrowserHost, IOleClientSite, IOleInPlaceSite, IDispatch> {
public:
    /// Creates the control as every program does (OleCreate), in the window's client area, and asks for its events.
    HRESULT Open(HWND i_window);
    /// Everything in the order that the platform requires.
    void Close();

    HRESULT Navigate(const std::wstring& i_url);
    /// The address of the current page.
    std::wstring Location() const;
    HWND View() const;

    std::vector<std::wstring> events;                   ///< "before URL", "complete URL", "error URL", "document URL"
    std::function<bool(const std::wstring&)> on_before; ///< Returns whether to cancel.
    std::function<void(const std::wstring&)> on_complete;
    std::function<void(const std::wstring&)> on_document;
    Qorv::ComPtr<IWebBrowser2> browser;

    HRESULT STDMETHODCALLTYPE Invoke(DISPID i_event, REFIID, LCID, WORD, DISPPARAMS* i_parameters, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveObject() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer**) noexcept override { return E_NOINTERFACE; }
    HRESULT STDMETHODCALLTYPE ShowObject() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* o_window) noexcept override;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CanInPlaceActivate() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceActivate() noexcept override;
    HRESULT STDMETHODCALLTYPE OnUIActivate() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame**, IOleInPlaceUIWindow**, RECT*, RECT*,
                                               OLEINPLACEFRAMEINFO*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Scroll(SIZE) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DiscardUndoState() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DeactivateAndUndo() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT*) noexcept override { return S_OK; }

private:
    HWND m_window = nullptr;
    Qorv::ComPtr<IOleObject> m_object;
    Qorv::ComPtr<IConnectionPoint> m_connection_point;
    DWORD m_cookie = 0;
};

} // namespace Tests
