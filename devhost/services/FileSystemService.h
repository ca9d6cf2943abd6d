#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"
#include "services/FilesCache.h"

#include <filesystem>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace DevHost {

/// The service "AFS": the registered file systems, each with a files cache. Caches may be looked up on any thread; the
/// rest is for the main thread only.
class FileSystemService final : public Qorv::CoClass<FileSystemService, Qorv::IAFS_Inst> {
public:
    FileSystemService(std::filesystem::path i_cache_folder, NoticeSink i_notice)
        : m_cache_folder(std::move(i_cache_folder)), m_notice(std::move(i_notice)) {}

    HRESULT STDMETHODCALLTYPE RegisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept override;
    HRESULT STDMETHODCALLTYPE UnregisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept override;
    /// E_INVALIDARG for a file system that is not registered.
    HRESULT STDMETHODCALLTYPE GetFilesCache(Qorv::IAFS_FileSys* i_file_system,
                                            Qorv::IAFS_FilesCache** o_cache) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateDlgDefaultParams(ULONG i_dialog_type,
                                                     Qorv::IAUX_CabNode** o_dialog_parameters) noexcept override;

    /// The registered file system with this id; null if there is none.
    Qorv::ComPtr<Qorv::IAFS_FileSys> Find(const std::wstring& i_id) const;
    /// The host's own view of a file system's cache; null if the file system is not registered.
    Qorv::ComPtr<FilesCache> CacheOf(Qorv::IAFS_FileSys* i_file_system) const;

    /// Unregisters every file system.
    void Close();

private:
    using Registration = std::pair<Qorv::ComPtr<Qorv::IAFS_FileSys>, Qorv::ComPtr<FilesCache>>;

    std::filesystem::path m_cache_folder;
    NoticeSink m_notice;
    mutable std::mutex m_mutex;
    std::vector<Registration> m_file_systems; ///< Guarded by the mutex.
};

} // namespace DevHost
