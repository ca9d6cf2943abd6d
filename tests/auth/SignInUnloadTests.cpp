// A plug-in that is unloaded while the user is asked to sign in.

#include "afs/AfsTest.h"
#include "core/host/StopSignal.h"
#include "script/WindowSteps.h"
#include "support/OnceInUse.h"

#include <future>
#include <memory>

namespace {

using Qorv::ComPtr;

class SignInUnloadTest : public Tests::AfsTest {
protected:
    /// Creates an account without a token, for which the user has to sign in.
    HRESULT SignIn() {
        ComPtr<Qorv::IAFS_AccountData> account;
        const HRESULT result = m_file_system->CreateAccount(nullptr, nullptr, nullptr, &account);
        EXPECT_EQ(nullptr, account);
        return result;
    }

    /// The same on a worker, while this thread serves the calls for the main thread. `i_meanwhile` runs before that.
    HRESULT SignInOnWorker(const std::function<void()>& i_meanwhile, std::shared_ptr<StopSignal> i_signal = nullptr) {
        const std::unique_ptr<void, decltype(&CloseHandle)> done(CreateEventW(nullptr, TRUE, FALSE, nullptr),
                                                                 &CloseHandle);
        auto worker = std::async(std::launch::async, [&] {
            const StopScope scope(i_signal);
            const HRESULT result = SignIn();
            SetEvent(done.get());
            return result;
        });
        Sleep(300); // By now it waits for the main thread.
        i_meanwhile();
        EXPECT_TRUE(m_host->MainThread().WaitAndPump(done.get(), 20'000));
        return worker.get();
    }

    HRESULT UnloadPlugin() {
        m_root.Reset();
        return m_plugin->Unload();
    }
};

TEST_F(SignInUnloadTest, TheDialogIsOpen) {
    const Tests::OnceInUse unload([&](HWND window) {
        EXPECT_HRESULT(S_OK, UnloadPlugin());
        return DevHost::CloseByBox(window, {});
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignIn());
    EXPECT_HRESULT(E_UNEXPECTED, SignIn()) << "the plug-in has gone";
}

TEST_F(SignInUnloadTest, AWorkerWaitsForTheDialog) {
    const Tests::OnceInUse unload([&](HWND window) {
        EXPECT_HRESULT(S_OK, UnloadPlugin());
        return DevHost::CloseByBox(window, {});
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignInOnWorker([] {}));
}

TEST_F(SignInUnloadTest, AWorkerWaitsForTheMainThread) {
    const Tests::OnceInUse close([](HWND window) { return DevHost::CloseByBox(window, {}); });
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignInOnWorker([&] { EXPECT_HRESULT(S_OK, UnloadPlugin()); }));
}

TEST_F(SignInUnloadTest, NobodyWaitsForTheSignInAnyMore) {
    const auto signal = std::make_shared<StopSignal>();
    int shown = 0;
    const Tests::OnceInUse close([&](HWND window) {
        ++shown;
        return DevHost::CloseByBox(window, {});
    });
    EXPECT_HRESULT(Qorv::ErrorCanceled, SignInOnWorker([&] { signal->Stop(); }, signal));
    EXPECT_EQ(0, shown) << "a sign-in that comes after its dialog has gone";
}

} // namespace
