#include "MeasuredHost.h"

#include "services/Failure.h"

#include <string_view>

namespace Bench {

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

MeasuredHost::MeasuredHost(Qorv::ComPtr<DevHost::MainInstance> i_host)
    : m_host(std::move(i_host)), m_file_systems(Qorv::Create<TappedFileSystems>(m_host->FileSystems())) {
    Qorv::ComPtr<IUnknown> service;
    DevHost::Check(m_host->GetExtension(L"UIX", &service), L"UIX");
    m_ui = Qorv::Create<TimedUi>(service.As<Qorv::IUIX_Inst>());
}

HRESULT STDMETHODCALLTYPE MeasuredHost::GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept {
    const std::wstring_view name = i_name;
    if (name != L"AFS" && name != L"UIX")
        return m_host->GetExtension(i_name, o_service);
    Qorv::ComPtr<IUnknown> service;
    // The service's own interface, which a caller may cast its pointer to.
    if (name == L"AFS")
        service = static_cast<Qorv::IAFS_Inst*>(m_file_systems);
    else
        service = static_cast<Qorv::IUIX_Inst*>(m_ui);
    *o_service = service.Detach();
    return S_OK;
}

} // namespace Bench
