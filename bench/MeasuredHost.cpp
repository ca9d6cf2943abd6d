#include "MeasuredHost.h"

#include "base/Failure.h"

#include <string_view>

namespace Bench {
namespace {

/// A worker's call, with the notices before and after it.
class NoticedCall final : public Qorv::CoClass<NoticedCall, Qorv::IQorv_ThreadSafeCallback> {
public:
    NoticedCall(Qorv::IQorv_ThreadSafeCallback* i_call, const MeasuredHost::Notice& i_notice)
        : m_call(i_call), m_notice(i_notice) {}
    HRESULT STDMETHODCALLTYPE OnExecute() noexcept override {
        m_notice(false);
        const HRESULT result = m_call->OnExecute();
        m_notice(true);
        return result;
    }

private:
    Qorv::ComPtr<Qorv::IQorv_ThreadSafeCallback> m_call;
    const MeasuredHost::Notice& m_notice;
};

} // namespace

HRESULT STDMETHODCALLTYPE TappedFileSystems::GetFilesCache(Qorv::IAFS_FileSys* i_file_system,
                                                           Qorv::IAFS_FilesCache** o_cache) noexcept {
    if (m_tap == nullptr) {
        Qorv::ComPtr<Qorv::IAFS_FilesCache> cache;
        if (const HRESULT result = m_service->GetFilesCache(i_file_system, &cache); FAILED(result))
            return result;
        m_tap = Qorv::Create<CallbackTap>(cache);
    }
    Qorv::ComPtr<Qorv::IAFS_FilesCache> cache(m_tap.Get());
    *o_cache = cache.Detach();
    return S_OK;
}

MeasuredHost::MeasuredHost(const Qorv::ComPtr<DevHost::MainInstance>& i_host)
    : ForwardingHost(i_host.Get()), m_file_systems(Qorv::Create<TappedFileSystems>(i_host->FileSystems())) {
    Qorv::ComPtr<IUnknown> service;
    DevHost::Check(m_host->GetExtension(L"UIX", &service), L"UIX");
    m_ui = Qorv::Create<TimedUi>(service.As<Qorv::IUIX_Inst>());
}

HRESULT STDMETHODCALLTYPE MeasuredHost::GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept {
    const std::wstring_view name = i_name;
    if (name != L"AFS" && name != L"UIX")
        return m_host->GetExtension(i_name, o_service);
    Qorv::ComPtr<IUnknown> service;
    // The service's own interface: a caller may cast its pointer to it.
    if (name == L"AFS")
        service = static_cast<Qorv::IAFS_Inst*>(m_file_systems);
    else
        service = static_cast<Qorv::IUIX_Inst*>(m_ui);
    *o_service = service.Detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE MeasuredHost::ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                            DWORD i_wait) noexcept {
    if (!m_notice || GetCurrentThreadId() == m_main_thread)
        return m_host->ExecuteOnMainThread(i_callback, i_wait);
    const auto call = Qorv::Create<NoticedCall>(i_callback, m_notice);
    return m_host->ExecuteOnMainThread(call, i_wait);
}

} // namespace Bench
