#include "services/FileSystemService.h"

#include "base/Failure.h"
#include "qorv/Values.h"
#include "services/CabNode.h"

#include <algorithm>

namespace DevHost {

HRESULT STDMETHODCALLTYPE FileSystemService::RegisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept {
    if (i_file_system == nullptr)
        return E_POINTER;
    return Answer([&] {
        if (CacheOf(i_file_system) != nullptr)
            return E_INVALIDARG;
        const auto cache = Qorv::Create<FilesCache>(m_cache_folder, m_notice);
        const std::lock_guard lock(m_mutex);
        m_file_systems.emplace_back(i_file_system, cache);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE FileSystemService::UnregisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept {
    const auto found = std::ranges::find(m_file_systems, i_file_system,
                                         [](const Registration& i_registration) { return i_registration.first.Get(); });
    if (found == m_file_systems.end())
        return E_INVALIDARG;
    const Registration registration = std::move(*found);
    {
        const std::lock_guard lock(m_mutex);
        m_file_systems.erase(found);
    }
    return Answer([&] { registration.second->Close(); });
}

HRESULT STDMETHODCALLTYPE FileSystemService::GetFilesCache(Qorv::IAFS_FileSys* i_file_system,
                                                           Qorv::IAFS_FilesCache** o_cache) noexcept {
    if (o_cache == nullptr)
        return E_POINTER;
    *o_cache = CacheOf(i_file_system).Detach();
    return *o_cache != nullptr ? S_OK : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE FileSystemService::CreateDlgDefaultParams(ULONG,
                                                                    Qorv::IAUX_CabNode** o_dialog_parameters) noexcept {
    if (o_dialog_parameters == nullptr)
        return E_POINTER;
    // The host sets nothing: the dialog supplies its defaults.
    *o_dialog_parameters = Qorv::Create<CabNode>().Detach();
    return *o_dialog_parameters != nullptr ? S_OK : E_OUTOFMEMORY;
}

Qorv::ComPtr<Qorv::IAFS_FileSys> FileSystemService::Find(const std::wstring& i_id) const {
    for (const auto& [file_system, cache] : m_file_systems) {
        Qorv::Bstr id;
        if (SUCCEEDED(file_system->get_Name(&id)) && id.View() == i_id)
            return file_system;
    }
    return nullptr;
}

Qorv::ComPtr<FilesCache> FileSystemService::CacheOf(Qorv::IAFS_FileSys* i_file_system) const {
    const std::lock_guard lock(m_mutex);
    for (const auto& [file_system, cache] : m_file_systems)
        if (file_system == i_file_system)
            return cache;
    return nullptr;
}

void FileSystemService::Close() {
    while (!m_file_systems.empty())
        UnregisterFileSys(m_file_systems.back().first);
}

} // namespace DevHost
