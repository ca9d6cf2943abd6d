#pragma once

#include "host/MainInstance.h"
#include "qorv/CoClass.h"

#include <string>

namespace Tests {

/// The development host's main instance, which fails at one call, named by its extension or its method.
class FailingHost final : public Qorv::CoClass<FailingHost, Qorv::IQorv_Inst> {
public:
    FailingHost(Qorv::ComPtr<DevHost::MainInstance> i_host, std::wstring i_failing_call);
    ~FailingHost();

    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                Qorv::IAUX_CabNode** o_settings) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCryptKey(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                          Qorv::IAUX_CryptKey** o_key) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateStdBindContext(Qorv::IAFS_BindContext** o_context) noexcept override;
    HRESULT STDMETHODCALLTYPE GetLocalStr(Qorv::PCStr i_id, BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE MergeLocalization(IStream* i_table) noexcept override;
    HRESULT STDMETHODCALLTYPE StringToID(Qorv::PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept override;
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MainFrameWnd(HWND* o_window) noexcept override;

private:
    Qorv::ComPtr<DevHost::MainInstance> m_host;
    std::wstring m_failing_call;
};

/// Takes a plug-in through its set-up and returns the step that failed, "" when none did.
const char* FailingStep(Qorv::IQorv_Plugin& io_plugin, Qorv::IQorv_Inst* i_host);

} // namespace Tests
