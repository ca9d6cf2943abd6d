#include "auth/WebBrowserControl.h"
#include "support/LiveObjectsTest.h"
#include "support/Log.h"
#include "support/Outcome.h"

#include <functional>

using Qorv::ComPtr;

namespace {

using WebBrowserControlTest = Tests::LiveObjectsTest;

struct Answer {
    const char* name;
    HRESULT expected;
    std::function<HRESULT(WebBrowserControl&)> call;
};

TEST_F(WebBrowserControlTest, GivesItsFixedAnswers) {
    static IStream* stream;
    static IStorage* storage;
    static IEnumSTATSTG* elements;
    static IMoniker* moniker;
    static IOleContainer* container;
    using Control = WebBrowserControl&;
    const Answer answers[] = {
        {"ContextSensitiveHelp", S_OK, [](Control c) { return c.ContextSensitiveHelp(TRUE); }},
        {"CanInPlaceActivate", S_OK, [](Control c) { return c.CanInPlaceActivate(); }},
        {"OnUIActivate", S_OK, [](Control c) { return c.OnUIActivate(); }},
        {"Scroll", S_OK, [](Control c) { return c.Scroll({}); }},
        {"OnUIDeactivate", S_OK, [](Control c) { return c.OnUIDeactivate(FALSE); }},
        {"OnInPlaceDeactivate", S_OK, [](Control c) { return c.OnInPlaceDeactivate(); }},
        {"DiscardUndoState", S_OK, [](Control c) { return c.DiscardUndoState(); }},
        {"DeactivateAndUndo", S_OK, [](Control c) { return c.DeactivateAndUndo(); }},
        {"OnPosRectChange", S_OK, [](Control c) { return c.OnPosRectChange(nullptr); }},
        {"SaveObject", S_OK, [](Control c) { return c.SaveObject(); }},
        {"GetMoniker", E_NOTIMPL, [](Control c) { return c.GetMoniker(0, 0, &moniker); }},
        {"GetMoniker, null", E_NOTIMPL, [](Control c) { return c.GetMoniker(0, 0, nullptr); }},
        {"GetContainer", E_NOINTERFACE, [](Control c) { return c.GetContainer(&container); }},
        {"GetContainer, null", E_NOINTERFACE, [](Control c) { return c.GetContainer(nullptr); }},
        {"ShowObject", S_OK, [](Control c) { return c.ShowObject(); }},
        {"OnShowWindow", S_OK, [](Control c) { return c.OnShowWindow(TRUE); }},
        {"RequestNewObjectLayout", E_NOTIMPL, [](Control c) { return c.RequestNewObjectLayout(); }},
        {"CreateStream", E_NOTIMPL, [](Control c) { return c.CreateStream(L"s", 0, 0, 0, &stream); }},
        {"CreateStream, null", E_INVALIDARG, [](Control c) { return c.CreateStream(L"s", 0, 0, 0, nullptr); }},
        {"OpenStream", E_NOTIMPL, [](Control c) { return c.OpenStream(L"s", nullptr, 0, 0, &stream); }},
        {"OpenStream, null", E_INVALIDARG, [](Control c) { return c.OpenStream(L"s", nullptr, 0, 0, nullptr); }},
        {"CreateStorage", E_NOTIMPL, [](Control c) { return c.CreateStorage(L"s", 0, 0, 0, &storage); }},
        {"CreateStorage, null", E_INVALIDARG, [](Control c) { return c.CreateStorage(L"s", 0, 0, 0, nullptr); }},
        {"OpenStorage", E_NOTIMPL, [](Control c) { return c.OpenStorage(L"s", nullptr, 0, nullptr, 0, &storage); }},
        {"OpenStorage, null", E_INVALIDARG,
         [](Control c) { return c.OpenStorage(L"s", nullptr, 0, nullptr, 0, nullptr); }},
        {"EnumElements", E_NOTIMPL, [](Control c) { return c.EnumElements(0, nullptr, 0, &elements); }},
        {"EnumElements, null", E_INVALIDARG, [](Control c) { return c.EnumElements(0, nullptr, 0, nullptr); }},
        {"CopyTo", E_NOTIMPL, [](Control c) { return c.CopyTo(0, nullptr, nullptr, nullptr); }},
        {"MoveElementTo", E_NOTIMPL, [](Control c) { return c.MoveElementTo(L"a", nullptr, L"b", 0); }},
        {"Commit", E_NOTIMPL, [](Control c) { return c.Commit(0); }},
        {"Revert", E_NOTIMPL, [](Control c) { return c.Revert(); }},
        {"DestroyElement", E_NOTIMPL, [](Control c) { return c.DestroyElement(L"a"); }},
        {"RenameElement", E_NOTIMPL, [](Control c) { return c.RenameElement(L"a", L"b"); }},
        {"SetElementTimes", E_NOTIMPL, [](Control c) { return c.SetElementTimes(L"a", nullptr, nullptr, nullptr); }},
        {"SetClass", S_OK, [](Control c) { return c.SetClass(CLSID_NULL); }},
        {"SetStateBits", E_NOTIMPL, [](Control c) { return c.SetStateBits(0, 0); }},
        {"Stat", E_NOTIMPL, [](Control c) { return c.Stat(nullptr, 0); }},
    };
    const auto control = Qorv::Create<WebBrowserControl>();
    for (const Answer& answer : answers) {
        SCOPED_TRACE(answer.name);
        EXPECT_HRESULT(answer.expected, answer.call(*control));
    }
    EXPECT_TRUE(stream == nullptr && storage == nullptr && elements == nullptr && moniker == nullptr &&
                container == nullptr);
}

TEST_F(WebBrowserControlTest, AnswersForEachOfItsInterfacesAndTheirBases) {
    const auto control = Qorv::Create<WebBrowserControl>();
    for (const IID& id : {IID_IUnknown, IID_IOleInPlaceSite, IID_IOleWindow, IID_IOleClientSite, IID_IStorage}) {
        ComPtr<IUnknown> found;
        EXPECT_HRESULT(S_OK, control->QueryInterface(id, reinterpret_cast<void**>(&found)));
    }
    ComPtr<IUnknown> found;
    EXPECT_HRESULT(E_NOINTERFACE, control->QueryInterface(IID_IOleInPlaceFrame, reinterpret_cast<void**>(&found)));
}

TEST_F(WebBrowserControlTest, AsksForAllOutputsOfTheWindowContext) {
    const auto control = Qorv::Create<WebBrowserControl>();
    IOleInPlaceFrame* frame = nullptr;
    IOleInPlaceUIWindow* document = nullptr;
    RECT rect{1, 2, 3, 4};
    RECT clip_rect = rect;
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof info;
    const RECT place{10, 20, 110, 220};
    EXPECT_HRESULT(S_OK, control->SetRect(place)); // Kept for the browser, which does not exist yet.
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindowContext(nullptr, &document, &rect, &clip_rect, &info));
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindowContext(&frame, nullptr, &rect, &clip_rect, &info));
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindowContext(&frame, &document, nullptr, &clip_rect, &info));
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindowContext(&frame, &document, &rect, nullptr, &info));
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindowContext(&frame, &document, &rect, &clip_rect, nullptr));
    for (const char* output : {"o_frame", "o_document_window", "o_rect", "o_clip_rect", "io_frame_info"})
        EXPECT_TRUE(log.Has("\"" + std::string(output) + " != nullptr\"")) << output;
    EXPECT_HRESULT(S_OK, control->GetWindowContext(&frame, &document, &rect, &clip_rect, &info));
    EXPECT_TRUE(EqualRect(&place, &rect) && EqualRect(&place, &clip_rect));
}

TEST_F(WebBrowserControlTest, RefusesToStartWithoutAWindow) {
    const auto control = Qorv::Create<WebBrowserControl>();
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, control->Init(nullptr, {}));
    EXPECT_TRUE(log.Has("Expression: \"i_parent_window != nullptr\" caused returning"));
    EXPECT_HRESULT(E_INVALIDARG, control->GetWindow(nullptr));
    EXPECT_HRESULT(E_UNEXPECTED, control->OnInPlaceActivate());
    EXPECT_HRESULT(E_UNEXPECTED, control->Navigate(L"about:blank"));
    control->Close();
}

/// A window for the system's own browser.
class BrowserWindow {
public:
    BrowserWindow() {
        OleInitialize(nullptr);
        m_window = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                                   nullptr, nullptr, nullptr);
    }
    ~BrowserWindow() {
        DestroyWindow(m_window);
        OleUninitialize();
    }

    HWND Handle() const { return m_window; }
    RECT PlaceOfChild() const {
        RECT place{};
        GetWindowRect(::GetWindow(m_window, GW_CHILD), &place);
        MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }

private:
    HWND m_window = nullptr;
};

TEST_F(WebBrowserControlTest, HoldsTheSystemsBrowserAndLetsItGo) {
    const BrowserWindow window;
    for (int run = 0; run < 3; ++run) {
        const auto control = Qorv::Create<WebBrowserControl>();
        const RECT place{0, 0, 200, 100};
        ASSERT_EQ(S_OK, control->Init(window.Handle(), place));
        ASSERT_NE(nullptr, control->GetBrowser());
        HWND parent = nullptr;
        EXPECT_HRESULT(S_OK, control->GetWindow(&parent));
        EXPECT_EQ(window.Handle(), parent);
        const RECT new_place{10, 20, 310, 220};
        EXPECT_HRESULT(S_OK, control->SetRect(new_place));
        const RECT actual = window.PlaceOfChild();
        EXPECT_TRUE(EqualRect(&new_place, &actual)) << actual.left << " " << actual.top << " " << actual.right;
        control->Close();
        EXPECT_EQ(nullptr, control->GetBrowser());
        EXPECT_EQ(nullptr, ::GetWindow(window.Handle(), GW_CHILD)) << "the browser's window is left";
        control->Close();
    }
}

TEST_F(WebBrowserControlTest, CanBeClosedAfterAFailedStart) {
    const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const auto control = Qorv::Create<WebBrowserControl>();
    EXPECT_TRUE(FAILED(control->Init(window, {0, 0, 9, 9}))) << "OLE is not initialised here";
    EXPECT_EQ(nullptr, control->GetBrowser());
    control->Close();
    DestroyWindow(window);
}

} // namespace
