#pragma once

#include "support/ForwardingHost.h"

#include <atomic>

namespace Tests {

/// The development host, which refuses some things when a test wants it to.
class OddHost final : public ForwardingHost<OddHost> {
public:
    explicit OddHost(Qorv::ComPtr<Qorv::IQorv_Inst> i_host) : ForwardingHost(std::move(i_host)) {}

    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override {
        return has_no_services ? E_NOTIMPL : m_host->GetExtension(i_name, o_service);
    }
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override {
        if (is_deaf_to_workers && GetCurrentThreadId() != m_main_thread)
            return E_ABORT;
        return m_host->ExecuteOnMainThread(i_callback, i_wait);
    }
    HRESULT STDMETHODCALLTYPE get_MainFrameWnd(HWND* o_window) noexcept override {
        *o_window = frame;
        return S_OK;
    }

    std::atomic<bool> is_deaf_to_workers = false;
    bool has_no_services = false;
    HWND frame = nullptr;

private:
    const DWORD m_main_thread = GetCurrentThreadId();
};

} // namespace Tests
