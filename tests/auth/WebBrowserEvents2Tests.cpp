#include "auth/WebBrowserEvents2.h"
#include "core/trace/Exceptions.h"
#include "qorv/Values.h"
#include "support/LiveObjectsTest.h"
#include "support/Log.h"
#include "support/Outcome.h"

#include <exdispid.h>

#include <array>

using Qorv::ComPtr;

namespace {

using WebBrowserEvents2Test = Tests::LiveObjectsTest;

VARIANT Reference(VARIANT& i_value) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &i_value;
    return reference;
}

VARIANT Dispatch() {
    VARIANT dispatch{};
    dispatch.vt = VT_DISPATCH;
    return dispatch;
}

HRESULT Fire(WebBrowserEvents2& i_events, DISPID i_event, VARIANT* i_arguments, UINT i_count) {
    DISPPARAMS parameters{};
    parameters.rgvarg = i_arguments;
    parameters.cArgs = i_count;
    return i_events.Invoke(i_event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                           nullptr);
}

/// A well-formed BeforeNavigate2, with its arguments last to first.
struct BeforeNavigate {
    Qorv::Variant url{Qorv::Bstr(L"https://a/")};
    Qorv::Variant flags{LONG{1}};
    Qorv::Variant target_frame{Qorv::Bstr(L"frame")};
    Qorv::Variant post_data;
    Qorv::Variant headers{Qorv::Bstr(L"headers")};
    VARIANT_BOOL cancel = VARIANT_FALSE;
    std::array<VARIANT, 7> arguments{VARIANT{},
                                     Reference(headers.m_value),
                                     Reference(post_data.m_value),
                                     Reference(target_frame.m_value),
                                     Reference(flags.m_value),
                                     Reference(url.m_value),
                                     Dispatch()};

    BeforeNavigate() {
        arguments[0].vt = VT_BYREF | VT_BOOL;
        arguments[0].pboolVal = &cancel;
    }
    HRESULT Fire(WebBrowserEvents2& i_events, UINT i_count = 7) {
        return ::Fire(i_events, DISPID_BEFORENAVIGATE2, arguments.data(), i_count);
    }
};

/// A well-formed NavigateComplete2.
struct NavigateComplete {
    Qorv::Variant url{Qorv::Bstr(L"https://a/")};
    std::array<VARIANT, 2> arguments{Reference(url.m_value), Dispatch()};

    HRESULT Fire(WebBrowserEvents2& i_events, UINT i_count = 2) {
        return ::Fire(i_events, DISPID_NAVIGATECOMPLETE2, arguments.data(), i_count);
    }
};

TEST_F(WebBrowserEvents2Test, HandsOnTheArgumentsOfBeforeNavigate2AndItsCancelAnswer) {
    BeforeNavigate event;
    for (const bool answer : {true, false}) {
        const auto events = Qorv::Create<WebBrowserEvents2>(
            [&](IDispatch*, const VARIANT& url, const VARIANT& flags, const VARIANT& frame, const VARIANT& post_data,
                const VARIANT& headers, bool& io_is_canceled) {
                EXPECT_EQ(&event.url.m_value, &url);
                EXPECT_EQ(&event.flags.m_value, &flags);
                EXPECT_EQ(&event.target_frame.m_value, &frame);
                EXPECT_EQ(&event.post_data.m_value, &post_data);
                EXPECT_EQ(&event.headers.m_value, &headers);
                EXPECT_EQ(!answer, io_is_canceled) << "the answer so far";
                io_is_canceled = answer;
                return S_OK;
            },
            nullptr);
        event.cancel = answer ? VARIANT_FALSE : VARIANT_TRUE;
        EXPECT_HRESULT(S_OK, event.Fire(*events));
        EXPECT_EQ(answer ? VARIANT_TRUE : VARIANT_FALSE, event.cancel);
    }
}

TEST_F(WebBrowserEvents2Test, HandsOnTheUrlOfNavigateComplete2) {
    std::wstring url;
    bool was_null = false;
    const auto events = Qorv::Create<WebBrowserEvents2>(nullptr, [&](const wchar_t* i_url) {
        was_null = i_url == nullptr;
        url = was_null ? L"" : i_url;
        return S_OK;
    });
    NavigateComplete event;
    EXPECT_HRESULT(S_OK, event.Fire(*events));
    EXPECT_EQ(L"https://a/", url);
    SysFreeString(std::exchange(event.url.m_value.bstrVal, nullptr));
    EXPECT_HRESULT(S_OK, event.Fire(*events));
    EXPECT_TRUE(was_null) << "a null string is handed on as such";
}

TEST_F(WebBrowserEvents2Test, RefusesArgumentsOfAnotherNumberOrType) {
    int calls = 0;
    const auto events = Qorv::Create<WebBrowserEvents2>(
        [&](IDispatch*, const VARIANT&, const VARIANT&, const VARIANT&, const VARIANT&, const VARIANT&, bool&) {
            ++calls;
            return S_OK;
        },
        [&](const wchar_t*) {
            ++calls;
            return S_OK;
        });
    for (UINT count = 0; count < 7; ++count)
        EXPECT_HRESULT(E_INVALIDARG, BeforeNavigate().Fire(*events, count));
    for (std::size_t argument = 0; argument < 7; ++argument)
        for (const VARTYPE type : {VT_EMPTY, VT_BOOL, VT_VARIANT, VT_BSTR, VT_UNKNOWN}) {
            BeforeNavigate event;
            event.arguments[argument].vt = type;
            EXPECT_HRESULT(E_INVALIDARG, event.Fire(*events)) << "argument " << argument << ", type " << type;
        }
    for (std::size_t argument = 0; argument < 6; ++argument) {
        BeforeNavigate event;
        event.arguments[argument].byref = nullptr;
        EXPECT_HRESULT(E_INVALIDARG, event.Fire(*events)) << "null reference as argument " << argument;
    }

    for (const UINT count : {0U, 1U})
        EXPECT_HRESULT(E_INVALIDARG, NavigateComplete().Fire(*events, count));
    for (std::size_t argument = 0; argument < 2; ++argument)
        for (const VARTYPE type : {VT_EMPTY, VT_VARIANT, VT_BSTR, VT_UNKNOWN}) {
            NavigateComplete event;
            event.arguments[argument].vt = type;
            EXPECT_HRESULT(E_INVALIDARG, event.Fire(*events)) << "argument " << argument << ", type " << type;
        }
    NavigateComplete event;
    Qorv::Variant number{LONG{5}};
    event.arguments[0].pvarVal = &number.m_value;
    EXPECT_HRESULT(E_INVALIDARG, event.Fire(*events)) << "a URL that is no text";
    event.arguments[0].pvarVal = nullptr;
    EXPECT_HRESULT(E_INVALIDARG, event.Fire(*events));

    for (const DISPID id : {DISPID_BEFORENAVIGATE2, DISPID_NAVIGATECOMPLETE2}) {
        EXPECT_HRESULT(E_INVALIDARG, Fire(*events, id, nullptr, 7));
        EXPECT_HRESULT(E_INVALIDARG, events->Invoke(id, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_EQ(0, calls);
}

TEST_F(WebBrowserEvents2Test, AnswersOtherEventsAndEmptyHandlersWithSuccess) {
    const auto events = Qorv::Create<WebBrowserEvents2>(nullptr, nullptr);
    for (const DISPID id : {0, 104, 251, 253, 259, 271})
        EXPECT_HRESULT(S_OK, events->Invoke(id, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr));
    BeforeNavigate before;
    before.cancel = VARIANT_TRUE;
    EXPECT_HRESULT(S_OK, before.Fire(*events));
    EXPECT_EQ(VARIANT_TRUE, before.cancel);
    EXPECT_HRESULT(S_OK, NavigateComplete().Fire(*events));
}

TEST_F(WebBrowserEvents2Test, AnswersWithTheHandlersResult) {
    const auto failing = Qorv::Create<WebBrowserEvents2>(nullptr, [](const wchar_t*) { return E_ACCESSDENIED; });
    EXPECT_HRESULT(E_ACCESSDENIED, NavigateComplete().Fire(*failing));
    const auto throwing = Qorv::Create<WebBrowserEvents2>(
        nullptr, [](const wchar_t*) -> HRESULT { throw Exception(L"a handler that throws"); });
    EXPECT_HRESULT(E_FAIL, NavigateComplete().Fire(*throwing));
}

TEST_F(WebBrowserEvents2Test, OutlivesTheEventInWhichItsLastOwnerGoes) {
    auto events = ComPtr<WebBrowserEvents2>();
    const ULONG others = Qorv::g_live_objects;
    events = Qorv::Create<WebBrowserEvents2>(nullptr, [&](const wchar_t*) {
        events->Shutdown();
        events.Reset();
        EXPECT_EQ(others + 1, Qorv::g_live_objects) << "it is still needed";
        return S_OK;
    });
    WebBrowserEvents2& plain = *events;
    EXPECT_HRESULT(S_OK, NavigateComplete().Fire(plain));
    EXPECT_EQ(others, Qorv::g_live_objects);
}

ComPtr<IWebBrowser2> CreateBrowser() {
    ComPtr<IWebBrowser2> browser;
    EXPECT_HRESULT(S_OK, CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWebBrowser2),
                                          reinterpret_cast<void**>(&browser)));
    return browser;
}

TEST_F(WebBrowserEvents2Test, OnlyTheMainFrameCounts) {
    OleInitialize(nullptr);
    {
        int calls = 0;
        const auto events = Qorv::Create<WebBrowserEvents2>(nullptr, [&](const wchar_t*) {
            ++calls;
            return S_OK;
        });
        const auto browser = CreateBrowser();
        const auto frame = CreateBrowser();
        EXPECT_HRESULT(S_OK, events->Init(browser));
        NavigateComplete event;
        event.arguments[1].pdispVal = frame;
        EXPECT_HRESULT(S_OK, event.Fire(*events));
        EXPECT_EQ(0, calls) << "an inner frame delivers no token";
        event.arguments[1].pdispVal = browser;
        EXPECT_HRESULT(S_OK, event.Fire(*events));
        EXPECT_EQ(1, calls);
        events->Shutdown();
    }
    OleUninitialize();
}

/// Whether anything besides the test holds the sink.
bool IsSubscribed(WebBrowserEvents2* i_events) {
    i_events->AddRef();
    return i_events->Release() > 1;
}

TEST_F(WebBrowserEvents2Test, SubscribesOnceAndUnsubscribes) {
    OleInitialize(nullptr);
    {
        ComPtr<IWebBrowser2> browser;
        ASSERT_EQ(S_OK, CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWebBrowser2),
                                         reinterpret_cast<void**>(&browser)));
        const auto events = Qorv::Create<WebBrowserEvents2>(nullptr, nullptr);
        const Tests::LogCapture log;
        EXPECT_HRESULT(E_INVALIDARG, events->Init(nullptr));
        EXPECT_HRESULT(S_OK, events->Init(browser));
        EXPECT_TRUE(IsSubscribed(events));
        EXPECT_HRESULT(E_UNEXPECTED, events->Init(browser));
        EXPECT_TRUE(log.Has("Expression: \"_web_browser == nullptr && _cookie == 0\" caused returning"));
        events->Shutdown();
        events->Shutdown();
        EXPECT_FALSE(IsSubscribed(events));
        EXPECT_HRESULT(S_OK, events->Init(browser)) << "it can be used again";
        events->Shutdown();
    }
    OleUninitialize();
}

} // namespace
