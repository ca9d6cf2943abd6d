#include "browser/Browser.h"

#include "base/Failure.h"
#include "browser/BrowserPages.h"

#include <olectl.h>

#include <utility>

// What the browser does. Its OLE object interfaces are in BrowserOle.cpp.

namespace DevHost {
namespace {

constexpr UINT begin_message = WM_APP + 1;
constexpr UINT loaded_message = WM_APP + 2;
constexpr wchar_t blank_page[] = L"about:blank";

/// The text of an argument that may be passed by reference.
std::wstring TextOf(const VARIANT* i_value) {
    if (i_value != nullptr && i_value->vt == (VT_BYREF | VT_VARIANT))
        i_value = i_value->pvarVal;
    if (i_value == nullptr)
        return {};
    const BSTR text = i_value->vt == VT_BSTR                ? i_value->bstrVal
                      : i_value->vt == (VT_BYREF | VT_BSTR) ? *i_value->pbstrVal
                                                            : nullptr;
    return text != nullptr ? std::wstring(text, SysStringLen(text)) : std::wstring();
}

/// A form's data, which a caller passes as an array of bytes; empty for none.
std::string BytesOf(const VARIANT* i_value) {
    if (i_value == nullptr || i_value->vt != (VT_ARRAY | VT_UI1) || i_value->parray == nullptr)
        return {};
    SAFEARRAY* const array = i_value->parray;
    const void* bytes = nullptr;
    if (array->cDims != 1 || FAILED(SafeArrayAccessData(array, const_cast<void**>(&bytes))))
        return {};
    std::string result(static_cast<const char*>(bytes), array->rgsabound[0].cElements);
    SafeArrayUnaccessData(array);
    return result;
}

} // namespace

Browser::Browser() : m_events(Qorv::Create<BrowserEvents>(static_cast<WebBrowserStub*>(this))) {
    if (m_events == nullptr)
        throw std::bad_alloc();
}

Browser::~Browser() {
    m_events->Close();
}

HRESULT STDMETHODCALLTYPE Browser::Navigate(BSTR i_url, VARIANT* i_flags, VARIANT* i_frame, VARIANT* i_data,
                                            VARIANT* i_headers) noexcept {
    VARIANT url{};
    url.vt = VT_BSTR;
    url.bstrVal = i_url;
    return Navigate2(&url, i_flags, i_frame, i_data, i_headers);
}

HRESULT STDMETHODCALLTYPE Browser::Navigate2(VARIANT* i_url, VARIANT* /*i_flags*/, VARIANT* /*i_frame*/,
                                             VARIANT* i_data, VARIANT* /*i_headers*/) noexcept {
    return Answer([&] {
        WebRequest request{TextOf(i_url), BytesOf(i_data), false};
        if (request.url.empty())
            return E_INVALIDARG;
        request.is_post = !request.body.empty();
        Request(std::move(request));
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE Browser::Refresh() noexcept {
    return Answer([&] {
        if (!m_url.empty())
            Request({m_url, {}, false});
    });
}

void Browser::Request(WebRequest i_request) {
    m_requested = std::move(i_request);
    if (m_view != nullptr)
        PostMessageW(m_view->Window(), begin_message, 0, 0);
}

HRESULT STDMETHODCALLTYPE Browser::Stop() noexcept {
    m_requested.reset();
    if (m_loader != nullptr)
        m_loader->Stop();
    if (m_view != nullptr)
        m_view->SetBusy(false);
    return S_OK;
}

bool Browser::IsBusy() const noexcept {
    return m_requested || (m_loader != nullptr && m_loader->IsLoading());
}

void Browser::OnMessage(UINT i_message) {
    const Qorv::ComPtr<Browser> self(this); // An event handler may release the last reference.
    Answer([&] {
        if (i_message == begin_message)
            BeginNavigation();
        else if (i_message == loaded_message)
            OnLoaded();
    });
}

/// Each event handler may change everything: close the browser, or navigate to another page.
void Browser::BeginNavigation() {
    std::optional<WebRequest> request = std::exchange(m_requested, std::nullopt);
    if (!request)
        return;
    const bool is_canceled = m_events->FireBeforeNavigate(*request);
    if (is_canceled || m_requested || m_view == nullptr)
        return;
    m_view->SetBusy(true);
    if (request->url == blank_page) {
        m_events->FireNavigateComplete(request->url);
        return ShowPage({}, request->url);
    }
    m_loader->Start(std::move(*request));
}

void Browser::OnLoaded() {
    const std::optional<WebReply> reply = m_loader->Take();
    if (!reply)
        return;
    if (SUCCEEDED(reply->result))
        m_events->FireNavigateComplete(reply->url);
    else
        m_events->FireNavigateError(reply->url, reply->result);
    ShowPage(PageOf(*reply), reply->url);
}

/// Don't show a page if another navigation has begun since.
void Browser::ShowPage(Page i_page, const std::wstring& i_url) {
    if (m_view == nullptr || IsBusy())
        return;
    m_url = i_url;
    m_title = i_page.title;
    m_view->Show(std::move(i_page), i_url);
    m_events->FireDocumentComplete(i_url);
}

HRESULT STDMETHODCALLTYPE Browser::get_LocationName(BSTR* o_title) noexcept {
    return AnswerText(m_title, o_title);
}

HRESULT STDMETHODCALLTYPE Browser::get_LocationURL(BSTR* o_url) noexcept {
    return AnswerText(m_url, o_url);
}

HRESULT STDMETHODCALLTYPE Browser::get_Busy(VARIANT_BOOL* o_is_busy) noexcept {
    if (o_is_busy == nullptr)
        return E_POINTER;
    *o_is_busy = IsBusy() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::get_ReadyState(READYSTATE* o_state) noexcept {
    if (o_state == nullptr)
        return E_POINTER;
    *o_state = IsBusy() ? READYSTATE_LOADING : m_url.empty() ? READYSTATE_UNINITIALIZED : READYSTATE_COMPLETE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::get_Silent(VARIANT_BOOL* o_is_silent) noexcept {
    if (o_is_silent == nullptr)
        return E_POINTER;
    *o_is_silent = m_is_silent;
    return S_OK;
}

/// The browser shows no dialogs, so it is always silent.
HRESULT STDMETHODCALLTYPE Browser::put_Silent(VARIANT_BOOL i_is_silent) noexcept {
    m_is_silent = i_is_silent;
    return S_OK;
}

HRESULT Browser::Activate(IOleClientSite* i_site, HWND i_parent, const RECT& i_place) {
    Qorv::ComPtr<IOleInPlaceSite> site;
    Check(i_site->QueryInterface(IID_IOleInPlaceSite, reinterpret_cast<void**>(&site)), L"Cannot activate the browser");
    if (site->CanInPlaceActivate() != S_OK)
        return E_FAIL;
    HWND parent = i_parent;
    if (parent == nullptr)
        Check(site->GetWindow(&parent), L"Cannot activate the browser");
    m_view =
        std::make_unique<PageView>(parent, i_place,
                                   PageView::Listener{[this](WebRequest i_request) { Request(std::move(i_request)); },
                                                      [this](UINT i_message) { OnMessage(i_message); }});
    m_loader = std::make_unique<PageLoader>(m_view->Window(), loaded_message);
    m_view->Show(LoadingPage(), {});
    const HRESULT result = site->OnInPlaceActivate();
    if (FAILED(result)) {
        m_loader.reset();
        m_view.reset();
        return result;
    }
    ShowWindow(m_view->Window(), SW_SHOW);
    site->OnUIActivate();
    if (m_requested)
        PostMessageW(m_view->Window(), begin_message, 0, 0);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Browser::InPlaceDeactivate() noexcept {
    m_loader.reset();
    const std::unique_ptr<PageView> view = std::move(m_view);
    if (view == nullptr)
        return S_OK;
    const Qorv::ComPtr<Browser> self(this);
    Qorv::ComPtr<IOleInPlaceSite> site;
    if (m_site == nullptr || FAILED(m_site->QueryInterface(IID_IOleInPlaceSite, reinterpret_cast<void**>(&site))))
        return S_OK;
    site->OnUIDeactivate(FALSE);
    site->OnInPlaceDeactivate();
    return S_OK;
}

} // namespace DevHost
