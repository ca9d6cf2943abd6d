#include "auth/AcceleratorMonitor.h"
#include "support/LiveObjectsTest.h"
#include "support/Outcome.h"

#include <oleidl.h>

namespace {

using AcceleratorMonitorTest = Tests::LiveObjectsTest;

/// One message of a message loop.
class LoopEvent final : public Qorv::CoClass<LoopEvent, Qorv::IUIX_LoopEvent> {
public:
    explicit LoopEvent(UINT i_message) : m_message(i_message) {}

    HRESULT STDMETHODCALLTYPE get_Window(HWND* o_window) noexcept override {
        *o_window = HWND_MESSAGE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Message(UINT* o_message) noexcept override {
        *o_message = m_message;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_WParam(WPARAM* o_w_param) noexcept override {
        *o_w_param = VK_TAB;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_LParam(LPARAM* o_l_param) noexcept override {
        *o_l_param = 0x000F0001;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_Handled(VARIANT_BOOL i_is_handled) noexcept override {
        handled = i_is_handled;
        return put_result;
    }

    VARIANT_BOOL handled = VARIANT_FALSE;
    HRESULT put_result = S_OK;

private:
    const UINT m_message;
};

/// The interface of an active browser that takes keys.
class ActiveObject final : public Qorv::CoClass<ActiveObject, IOleInPlaceActiveObject> {
public:
    explicit ActiveObject(HRESULT i_answer) : m_answer(i_answer) {}

    HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* i_message) noexcept override {
        messages.push_back(*i_message);
        return m_answer;
    }
    HRESULT STDMETHODCALLTYPE GetWindow(HWND*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ResizeBorder(const RECT*, IOleInPlaceUIWindow*, BOOL) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) noexcept override { return E_NOTIMPL; }

    std::vector<MSG> messages;

private:
    const HRESULT m_answer;
};

TEST_F(AcceleratorMonitorTest, GivesKeyPressesToTheBrowser) {
    const auto browser = Qorv::Create<ActiveObject>(S_OK);
    const auto monitor = Qorv::Create<AcceleratorMonitor>(browser);
    const auto event = Qorv::Create<LoopEvent>(WM_KEYDOWN);
    EXPECT_HRESULT(S_OK, monitor->OnEventLoopMonitor(event));
    ASSERT_EQ(1U, browser->messages.size());
    EXPECT_EQ(HWND_MESSAGE, browser->messages[0].hwnd);
    EXPECT_EQ(UINT{WM_KEYDOWN}, browser->messages[0].message);
    EXPECT_EQ(WPARAM{VK_TAB}, browser->messages[0].wParam);
    EXPECT_EQ(LPARAM{0x000F0001}, browser->messages[0].lParam);
    EXPECT_EQ(VARIANT_TRUE, event->handled);
}

TEST_F(AcceleratorMonitorTest, LeavesToTheHostWhatTheBrowserDoesNotTake) {
    for (const HRESULT answer : {S_FALSE, E_NOTIMPL}) {
        const auto monitor = Qorv::Create<AcceleratorMonitor>(Qorv::Create<ActiveObject>(answer));
        const auto event = Qorv::Create<LoopEvent>(WM_KEYDOWN);
        EXPECT_HRESULT(S_OK, monitor->OnEventLoopMonitor(event));
        EXPECT_EQ(VARIANT_FALSE, event->handled);
    }
}

TEST_F(AcceleratorMonitorTest, LeavesOtherMessagesAlone) {
    const auto browser = Qorv::Create<ActiveObject>(S_OK);
    const auto monitor = Qorv::Create<AcceleratorMonitor>(browser);
    for (const UINT message : {WM_KEYUP, WM_CHAR, WM_SYSKEYDOWN, WM_LBUTTONDOWN, WM_PAINT, WM_NULL}) {
        const auto event = Qorv::Create<LoopEvent>(message);
        EXPECT_HRESULT(S_OK, monitor->OnEventLoopMonitor(event));
        EXPECT_EQ(VARIANT_FALSE, event->handled);
    }
    EXPECT_TRUE(browser->messages.empty());
}

TEST_F(AcceleratorMonitorTest, NeedsAnEventAndNoBrowser) {
    const auto monitor = Qorv::Create<AcceleratorMonitor>(nullptr);
    EXPECT_HRESULT(E_INVALIDARG, monitor->OnEventLoopMonitor(nullptr));
    const auto event = Qorv::Create<LoopEvent>(WM_KEYDOWN);
    EXPECT_HRESULT(S_OK, monitor->OnEventLoopMonitor(event));
    EXPECT_EQ(VARIANT_FALSE, event->handled);
    event->put_result = E_ACCESSDENIED;
    const auto keen = Qorv::Create<AcceleratorMonitor>(Qorv::Create<ActiveObject>(S_OK));
    EXPECT_HRESULT(E_ACCESSDENIED, keen->OnEventLoopMonitor(event));
}

} // namespace
