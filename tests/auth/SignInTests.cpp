#include "auth/SignIn.h"
#include "script/WindowSteps.h"
#include "support/HostTest.h"
#include "support/Log.h"
#include "support/OnceInUse.h"
#include "support/Outcome.h"

#include <exdisp.h>

#include <array>

using Qorv::ComPtr;

namespace {

int WindowsOfThread() {
    int count = 0;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM result) {
            *reinterpret_cast<int*>(result) += IsWindowVisible(window) ? 1 : 0;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

/// The real dialog with the system's browser, whose pages these tests do not need.
class SignInTest : public Tests::HostTest {
protected:
    void TearDown() override {
        EXPECT_EQ(0, WindowsOfThread());
        HostTest::TearDown();
    }

    HRESULT Run() { return AuthenticateDropboxOAuth2(m_host, L"app-key", header, account_id); }

    std::wstring header = L"of an earlier sign-in";
    std::wstring account_id = header;
};

TEST_F(SignInTest, EndsWithoutFailureAndWithEmptyOutputsWhenTheUserClosesTheDialog) {
    for (int run = 0; run < 3; ++run) {
        std::wstring title;
        const Tests::OnceInUse close([&](HWND window) {
            std::array<wchar_t, 100> text{};
            GetWindowTextW(window, text.data(), int{text.size()});
            title = text.data();
            return DevHost::CloseByBox(window, {});
        });
        EXPECT_HRESULT(S_OK, Run());
        EXPECT_EQ(L"Sign in to Dropbox", title);
        EXPECT_EQ(L"", header + account_id);
    }
}

TEST_F(SignInTest, GivesTheBrowserTheWholeClientAreaWhateverItsSize) {
    const Tests::OnceInUse resize([](HWND window) {
        for (const int size : {300, 500}) {
            SetWindowPos(window, nullptr, 0, 0, size, size, SWP_NOZORDER | SWP_NOMOVE);
            RECT client{};
            RECT browser{};
            GetClientRect(window, &client);
            EXPECT_GT(client.right, 200);
            GetWindowRect(GetWindow(window, GW_CHILD), &browser);
            MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&browser), 2);
            EXPECT_TRUE(EqualRect(&client, &browser)) << browser.right << " x " << browser.bottom;
        }
        return DevHost::CloseByBox(window, {});
    });
    EXPECT_HRESULT(S_OK, Run());
}

TEST_F(SignInTest, LeavesNothingWhenItsOwnerIsDestroyed) {
    const HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 200, nullptr,
                                       nullptr, nullptr, nullptr);
    SetActiveWindow(owner);
    const Tests::OnceInUse destroy([owner](HWND window) { return window != owner && DestroyWindow(owner); });
    EXPECT_TRUE(SUCCEEDED(Run()));
    EXPECT_EQ(L"", header + account_id);
}

TEST_F(SignInTest, BringsItsOwnOleAndTakesItBack) {
    OleUninitialize();
    {
        const Tests::OnceInUse close([](HWND window) { return DevHost::CloseByBox(window, {}); });
        EXPECT_HRESULT(S_OK, Run());
    }
    ComPtr<IUnknown> browser;
    EXPECT_HRESULT(CO_E_NOTINITIALIZED, CoCreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                                         reinterpret_cast<void**>(&browser)));
    EXPECT_HRESULT(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    EXPECT_HRESULT(RPC_E_CHANGED_MODE, Run()) << "a thread that cannot show a browser";
    CoUninitialize();
    EXPECT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
}

} // namespace
