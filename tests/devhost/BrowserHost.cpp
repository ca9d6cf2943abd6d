#include "BrowserHost.h"

#include "qorv/Values.h"

#include <exdispid.h>
#include <gtest/gtest.h>
#include <shlwapi.h>

namespace Tests {
namespace {

using Qorv::ComPtr;

std::wstring UrlOf(const VARIANT& i_argument) {
    EXPECT_EQ(i_argument.vt, VT_BYREF | VT_VARIANT);
    EXPECT_EQ(i_argument.pvarVal->vt, VT_BSTR);
    return {i_argument.pvarVal->bstrVal, SysStringLen(i_argument.pvarVal->bstrVal)};
}

/// The seven arguments, last to first, as the platform documents them.
std::wstring CheckBeforeNavigate(const DISPPARAMS& i_parameters) {
    EXPECT_EQ(i_parameters.cArgs, 7u);
    const VARIANT* const arguments = i_parameters.rgvarg;
    EXPECT_EQ(arguments[0].vt, VT_BYREF | VT_BOOL);
    for (const int index : {1, 2, 3, 4})
        EXPECT_EQ(arguments[index].vt, VT_BYREF | VT_VARIANT) << index;
    EXPECT_EQ(arguments[6].vt, VT_DISPATCH);
    return UrlOf(arguments[5]);
}

} // namespace

HRESULT BrowserHost::Open(HWND i_window) {
    m_window = i_window;
    RECT place;
    GetClientRect(m_window, &place);
    ComPtr<IStorage> storage;
    HRESULT result =
        StgCreateDocfile(nullptr, STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0, &storage);
    if (SUCCEEDED(result))
        result = OleCreate(CLSID_WebBrowser, IID_IOleObject, OLERENDER_DRAW, nullptr, this, storage,
                           reinterpret_cast<void**>(&m_object));
    if (FAILED(result))
        return result;
    OleSetContainedObject(m_object, TRUE);
    result = m_object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, -1, m_window, &place);
    if (SUCCEEDED(result))
        result = m_object->QueryInterface(IID_IWebBrowser2, reinterpret_cast<void**>(&browser));
    ComPtr<IConnectionPointContainer> container;
    if (SUCCEEDED(result))
        result = browser->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
    if (SUCCEEDED(result))
        result = container->FindConnectionPoint(DIID_DWebBrowserEvents2, &m_connection_point);
    return SUCCEEDED(result) ? m_connection_point->Advise(static_cast<IDispatch*>(this), &m_cookie) : result;
}

void BrowserHost::Close() {
    const ComPtr<BrowserHost> self(this);
    if (m_connection_point != nullptr)
        m_connection_point->Unadvise(m_cookie);
    m_connection_point.Reset();
    browser.Reset();
    if (m_object == nullptr)
        return;
    ComPtr<IOleInPlaceObject> in_place;
    m_object->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&in_place));
    in_place->InPlaceDeactivate();
    in_place.Reset();
    OleLockRunning(m_object, FALSE, FALSE);
    m_object->Close(OLECLOSE_NOSAVE);
    m_object->SetClientSite(nullptr);
    m_object.Reset();
}

HRESULT BrowserHost::Navigate(const std::wstring& i_url) {
    Qorv::Variant url{Qorv::Bstr(i_url)};
    return browser->Navigate2(&url.m_value, nullptr, nullptr, nullptr, nullptr);
}

std::wstring BrowserHost::Location() const {
    Qorv::Bstr url;
    browser->get_LocationURL(&url);
    return std::wstring(url.View());
}

HWND BrowserHost::View() const {
    HWND window = nullptr;
    ComPtr<IOleWindow> in_place;
    browser->QueryInterface(IID_IOleWindow, reinterpret_cast<void**>(&in_place));
    in_place->GetWindow(&window);
    return window;
}

HRESULT STDMETHODCALLTYPE BrowserHost::Invoke(DISPID i_event, REFIID, LCID, WORD, DISPPARAMS* i_parameters, VARIANT*,
                                              EXCEPINFO*, UINT*) noexcept {
    const ComPtr<BrowserHost> self(this);
    if (i_event == DISPID_BEFORENAVIGATE2) {
        const std::wstring url = CheckBeforeNavigate(*i_parameters);
        events.push_back(L"before " + url);
        if (on_before)
            *i_parameters->rgvarg[0].pboolVal = on_before(url) ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    if (i_event == DISPID_NAVIGATEERROR) {
        events.push_back(L"error " + UrlOf(i_parameters->rgvarg[3]));
        return S_OK;
    }
    EXPECT_EQ(i_parameters->cArgs, 2u);
    EXPECT_EQ(i_parameters->rgvarg[1].vt, VT_DISPATCH);
    const std::wstring url = UrlOf(i_parameters->rgvarg[0]);
    if (i_event == DISPID_NAVIGATECOMPLETE2) {
        events.push_back(L"complete " + url);
        if (on_complete)
            on_complete(url);
    } else if (i_event == DISPID_DOCUMENTCOMPLETE) {
        events.push_back(L"document " + url);
        if (on_document)
            on_document(url);
    }
    return S_OK;
}

HRESULT STDMETHODCALLTYPE BrowserHost::GetWindow(HWND* o_window) noexcept {
    *o_window = m_window;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE BrowserHost::OnInPlaceActivate() noexcept {
    return OleLockRunning(m_object, TRUE, FALSE);
}

} // namespace Tests
