#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <utility>

namespace Tests {

/// A host that passes every call on to another one. A class derived from it overrides the calls that it changes.
template <typename Derived>
class ForwardingHost : public Qorv::CoClass<Derived, Qorv::IQorv_Inst> {
public:
    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override {
        return m_host->GetExtension(i_name, o_service);
    }
    HRESULT STDMETHODCALLTYPE GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                Qorv::IAUX_CabNode** o_settings) noexcept override {
        return m_host->GetPluginSettings(i_plugin, i_create, o_settings);
    }
    HRESULT STDMETHODCALLTYPE GetCryptKey(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                          Qorv::IAUX_CryptKey** o_key) noexcept override {
        return m_host->GetCryptKey(i_plugin, i_create, o_key);
    }
    HRESULT STDMETHODCALLTYPE CreateStdBindContext(Qorv::IAFS_BindContext** o_context) noexcept override {
        return m_host->CreateStdBindContext(o_context);
    }
    HRESULT STDMETHODCALLTYPE GetLocalStr(Qorv::PCStr i_id, BSTR* o_text) noexcept override {
        return m_host->GetLocalStr(i_id, o_text);
    }
    HRESULT STDMETHODCALLTYPE MergeLocalization(IStream* i_table) noexcept override {
        return m_host->MergeLocalization(i_table);
    }
    HRESULT STDMETHODCALLTYPE StringToID(Qorv::PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) noexcept override {
        return m_host->StringToID(i_name, i_create, o_id);
    }
    HRESULT STDMETHODCALLTYPE get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept override {
        return m_host->get_EventServer(o_server);
    }
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override {
        return m_host->ExecuteOnMainThread(i_callback, i_wait);
    }
    HRESULT STDMETHODCALLTYPE get_MainFrameWnd(HWND* o_window) noexcept override {
        return m_host->get_MainFrameWnd(o_window);
    }

protected:
    explicit ForwardingHost(Qorv::ComPtr<Qorv::IQorv_Inst> i_host) : m_host(std::move(i_host)) {}

    const Qorv::ComPtr<Qorv::IQorv_Inst> m_host;
};

} // namespace Tests
