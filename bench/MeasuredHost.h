#pragma once

#include "TimedUi.h"
#include "host/MainInstance.h"
#include "qorv/CoClass.h"
#include "support/ForwardingHost.h"

#include <functional>

namespace Bench {

/// The files cache of the development host, which remembers the last cache callback that the plug-in gave it, so that
/// the callback can be driven without the cache around it.
class CallbackTap final : public Qorv::CoClass<CallbackTap, Qorv::IAFS_FilesCache> {
public:
    explicit CallbackTap(Qorv::ComPtr<Qorv::IAFS_FilesCache> i_cache) : m_cache(std::move(i_cache)) {}

    Qorv::ComPtr<Qorv::IAFS_FileCacheCallbacks> TakeCallback() noexcept { return std::move(m_callback); }

    HRESULT STDMETHODCALLTYPE QueryCache(Qorv::IAFS_File* i_file, ULONG i_flags,
                                         Qorv::IAFS_FileCache** o_cache) noexcept override {
        return m_cache->QueryCache(i_file, i_flags, o_cache);
    }
    HRESULT STDMETHODCALLTYPE CreateNewCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCacheCallbacks* i_callback,
                                             ULONG i_flags, ULONGLONG i_size, VARIANT_BOOL i_is_temporary,
                                             ULONG i_reserved1, ULONG i_reserved2,
                                             Qorv::IAFS_FileCache** o_cache) noexcept override {
        m_callback = i_callback;
        return m_cache->CreateNewCache(i_file, i_callback, i_flags, i_size, i_is_temporary, i_reserved1, i_reserved2,
                                       o_cache);
    }
    HRESULT STDMETHODCALLTYPE FlushAllCaches(Qorv::IQorv_ErrorDetails* o_details, Qorv::IQorv_CancelFlag* i_cancel_flag,
                                             VARIANT_BOOL i_close) noexcept override {
        return m_cache->FlushAllCaches(o_details, i_cancel_flag, i_close);
    }
    HRESULT STDMETHODCALLTYPE CheckForReopenFile(Qorv::IAFS_File* i_file, ULONG i_new_flags) noexcept override {
        return m_cache->CheckForReopenFile(i_file, i_new_flags);
    }
    HRESULT STDMETHODCALLTYPE CloseCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCache* i_cache,
                                         Qorv::IQorv_ErrorDetails* o_details,
                                         Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override {
        return m_cache->CloseCache(i_file, i_cache, o_details, i_cancel_flag);
    }

private:
    Qorv::ComPtr<Qorv::IAFS_FilesCache> m_cache;
    Qorv::ComPtr<Qorv::IAFS_FileCacheCallbacks> m_callback;
};

/// The service "AFS" of the development host, with the tap in its files cache.
class TappedFileSystems final : public Qorv::CoClass<TappedFileSystems, Qorv::IAFS_Inst> {
public:
    explicit TappedFileSystems(DevHost::FileSystemService& i_service) : m_service(&i_service) {}

    /// Null until the plug-in has asked for its files cache.
    CallbackTap* Tap() const noexcept { return m_tap; }

    HRESULT STDMETHODCALLTYPE RegisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept override {
        return m_service->RegisterFileSys(i_file_system);
    }
    HRESULT STDMETHODCALLTYPE UnregisterFileSys(Qorv::IAFS_FileSys* i_file_system) noexcept override {
        return m_service->UnregisterFileSys(i_file_system);
    }
    HRESULT STDMETHODCALLTYPE GetFilesCache(Qorv::IAFS_FileSys* i_file_system,
                                            Qorv::IAFS_FilesCache** o_cache) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateDlgDefaultParams(ULONG i_dialog_type,
                                                     Qorv::IAUX_CabNode** o_dialog_parameters) noexcept override {
        return m_service->CreateDlgDefaultParams(i_dialog_type, o_dialog_parameters);
    }

private:
    Qorv::ComPtr<DevHost::FileSystemService> m_service;
    Qorv::ComPtr<CallbackTap> m_tap;
};

/// The development host's main instance with services that can be measured.
class MeasuredHost final : public Tests::ForwardingHost<MeasuredHost> {
public:
    explicit MeasuredHost(const Qorv::ComPtr<DevHost::MainInstance>& i_host);

    TappedFileSystems& FileSystems() const noexcept { return *m_file_systems; }
    TimedUi& Ui() const noexcept { return *m_ui; }

    using Notice = std::function<void(bool i_is_done)>;

    /// Called on the main thread before and after each call for a worker of the plug-in; may be empty.
    void OnWorkersCall(Notice i_notice) { m_notice = std::move(i_notice); }

    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override;
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override;

private:
    Qorv::ComPtr<TappedFileSystems> m_file_systems;
    Qorv::ComPtr<TimedUi> m_ui;
    const DWORD m_main_thread = GetCurrentThreadId();
    Notice m_notice;
};

} // namespace Bench
