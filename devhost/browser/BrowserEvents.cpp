#include "browser/BrowserEvents.h"

#include "base/Failure.h"
#include "qorv/Values.h"

#include <exdisp.h>
#include <exdispid.h>
#include <olectl.h>

#include <array>
#include <utility>

namespace DevHost {
namespace {

using Qorv::Bstr;
using Qorv::ComPtr;
using Qorv::Variant;

/// An argument passed by reference, as in most of these events.
VARIANT ByReference(Variant& io_value) {
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = &io_value.m_value;
    return argument;
}

VARIANT ByReference(VARIANT_BOOL& io_value) {
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_BOOL;
    argument.pboolVal = &io_value;
    return argument;
}

VARIANT Object(IDispatch* i_object) {
    VARIANT argument{};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = i_object;
    return argument;
}

/// A form's data as an array of bytes; empty for none.
void PutPostData(Variant& o_value, const std::string& i_data) {
    if (i_data.empty())
        return;
    SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(i_data.size()));
    void* bytes = nullptr;
    if (array == nullptr || FAILED(SafeArrayAccessData(array, &bytes)))
        throw std::bad_alloc();
    i_data.copy(static_cast<char*>(bytes), i_data.size());
    SafeArrayUnaccessData(array);
    o_value.m_value.vt = VT_ARRAY | VT_UI1;
    o_value.m_value.parray = array;
}

} // namespace

void BrowserEvents::Close() noexcept {
    m_browser = nullptr;
    const auto sinks = std::exchange(m_sinks, {});
}

bool BrowserEvents::FireBeforeNavigate(const WebRequest& i_request) {
    Variant url{Bstr(i_request.url)};
    Variant flags{LONG{0}};
    Variant target_frame{Bstr(L"")};
    Variant post_data;
    PutPostData(post_data, i_request.body);
    Variant headers{Bstr(i_request.is_post ? L"Content-Type: application/x-www-form-urlencoded\r\n" : L"")};
    VARIANT_BOOL is_canceled = VARIANT_FALSE;
    // Last to first.
    std::array<VARIANT, 7> arguments = {ByReference(is_canceled),  ByReference(headers), ByReference(post_data),
                                        ByReference(target_frame), ByReference(flags),   ByReference(url),
                                        Object(m_browser)};
    Fire(DISPID_BEFORENAVIGATE2, arguments.data(), UINT{arguments.size()});
    return is_canceled != VARIANT_FALSE;
}

void BrowserEvents::FireNavigateComplete(const std::wstring& i_url) {
    FireWithUrl(DISPID_NAVIGATECOMPLETE2, i_url);
}

void BrowserEvents::FireDocumentComplete(const std::wstring& i_url) {
    FireWithUrl(DISPID_DOCUMENTCOMPLETE, i_url);
}

void BrowserEvents::FireWithUrl(DISPID i_event, const std::wstring& i_url) {
    Variant url{Bstr(i_url)};
    std::array<VARIANT, 2> arguments = {ByReference(url), Object(m_browser)};
    Fire(i_event, arguments.data(), UINT{arguments.size()});
}

void BrowserEvents::FireNavigateError(const std::wstring& i_url, LONG i_status) {
    Variant url{Bstr(i_url)};
    Variant frame{Bstr(L"")};
    Variant status{i_status};
    VARIANT_BOOL is_canceled = VARIANT_FALSE;
    std::array<VARIANT, 5> arguments = {ByReference(is_canceled), ByReference(status), ByReference(frame),
                                        ByReference(url), Object(m_browser)};
    Fire(DISPID_NAVIGATEERROR, arguments.data(), UINT{arguments.size()});
}

void BrowserEvents::Fire(DISPID i_event, VARIANT* i_arguments, UINT i_count) {
    const auto sinks = m_sinks; // Sinks may be added or removed during the calls.
    for (const auto& [cookie, sink] : sinks) {
        DISPPARAMS parameters{i_arguments, nullptr, i_count, 0};
        sink->Invoke(i_event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
    }
}

HRESULT STDMETHODCALLTYPE BrowserEvents::GetConnectionInterface(IID* o_id) noexcept {
    if (o_id == nullptr)
        return E_POINTER;
    *o_id = DIID_DWebBrowserEvents2;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE BrowserEvents::GetConnectionPointContainer(IConnectionPointContainer** o_container) noexcept {
    if (o_container == nullptr)
        return E_POINTER;
    *o_container = nullptr;
    if (m_browser == nullptr)
        return E_UNEXPECTED;
    return m_browser->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(o_container));
}

HRESULT STDMETHODCALLTYPE BrowserEvents::Advise(IUnknown* i_sink, DWORD* o_cookie) noexcept {
    if (i_sink == nullptr || o_cookie == nullptr)
        return E_POINTER;
    *o_cookie = 0;
    ComPtr<IDispatch> sink;
    if (FAILED(i_sink->QueryInterface(DIID_DWebBrowserEvents2, reinterpret_cast<void**>(&sink))) &&
        FAILED(i_sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&sink))))
        return CONNECT_E_CANNOTCONNECT;
    return Answer([&] {
        m_sinks.emplace(m_last_cookie + 1, std::move(sink));
        *o_cookie = ++m_last_cookie;
    });
}

HRESULT STDMETHODCALLTYPE BrowserEvents::Unadvise(DWORD i_cookie) noexcept {
    const auto left = m_sinks.extract(i_cookie); // Released last: it may call back.
    return left ? S_OK : CONNECT_E_NOCONNECTION;
}

HRESULT STDMETHODCALLTYPE BrowserEvents::EnumConnections(IEnumConnections** o_connections) noexcept {
    if (o_connections == nullptr)
        return E_POINTER;
    *o_connections = nullptr;
    return E_NOTIMPL;
}

} // namespace DevHost
