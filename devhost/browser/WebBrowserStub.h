#pragma once

#include "qorv/Base.h"

#include <exdisp.h>

namespace DevHost {

/// IWebBrowser2 with every method unimplemented: a browser overrides what it offers.
class WebBrowserStub : public IWebBrowser2 {
public:
    static constexpr IID Id = {0xd30c1661, 0xcdaf, 0x11d0, {0x8a, 0x3e, 0x00, 0xc0, 0x4f, 0xc9, 0xe2, 0x6e}};

    HRESULT STDMETHODCALLTYPE GoBack() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoForward() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoHome() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GoSearch() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Navigate(BSTR, VARIANT*, VARIANT*, VARIANT*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Refresh() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Refresh2(VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Stop() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Application(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Parent(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Container(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Document(IDispatch**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_TopLevelContainer(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Type(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Left(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Left(LONG) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Top(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Top(LONG) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Width(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Width(LONG) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Height(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Height(LONG) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LocationName(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_LocationURL(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Busy(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Quit() noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ClientToWindow(int*, int*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PutProperty(BSTR, VARIANT) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR, VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_HWND(SHANDLE_PTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FullName(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Path(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_StatusBar(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_StatusBar(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_StatusText(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_StatusText(BSTR) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ToolBar(int*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_ToolBar(int) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_MenuBar(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_MenuBar(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_FullScreen(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_FullScreen(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Navigate2(VARIANT*, VARIANT*, VARIANT*, VARIANT*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE QueryStatusWB(OLECMDID, OLECMDF*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ExecWB(OLECMDID, OLECMDEXECOPT, VARIANT*, VARIANT*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ShowBrowserBar(VARIANT*, VARIANT*, VARIANT*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_ReadyState(READYSTATE*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Offline(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Offline(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Silent(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Silent(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_RegisterAsBrowser(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_RegisterAsBrowser(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_RegisterAsDropTarget(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_RegisterAsDropTarget(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_TheaterMode(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_TheaterMode(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_AddressBar(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_AddressBar(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Resizable(VARIANT_BOOL*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_Resizable(VARIANT_BOOL) noexcept override { return E_NOTIMPL; }
};

} // namespace DevHost
