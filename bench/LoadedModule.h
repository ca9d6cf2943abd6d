#pragma once

#include "MeasuredHost.h"
#include "host/ModuleLoader.h"
#include "support/TemporaryFolder.h"

#include <string>

namespace Bench {

/// The module that ships, loaded into the development host and set up. Main thread only. Throws a `DevHost::Failure`.
class LoadedModule {
public:
    LoadedModule();
    /// Ends and unloads it; leaks are for the tests to find.
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    /// The time from loading the module to the end of `Init`, in milliseconds.
    double LoadTime() const noexcept { return m_load_time; }
    /// The part of it spent by the operating system loading the module's file.
    double LibraryTime() const noexcept { return m_library_time; }
    /// The part of it spent by the host decoding the plug-in's icon.
    double DecodingTime() const noexcept;

    /// Ends what the plug-in still does, before the destructor would.
    void Unload();

    /// Binds the service's account.
    void BindAccount();
    /// The name of a path in the account, which begins with "/". The service is not asked.
    Qorv::ComPtr<Qorv::IAFS_Name> NameOf(const std::wstring& i_path) const;
    Qorv::ComPtr<Qorv::IAFS_File> Open(const std::wstring& i_path, ULONG i_flags) const;

    MeasuredHost& Host() const noexcept { return *m_host; }
    Qorv::IAFS_FileSys& FileSystem() const noexcept { return *m_file_system; }
    /// The callback that the plug-in passed for the last opened file.
    Qorv::ComPtr<Qorv::IAFS_FileCacheCallbacks> TakeCallback() const noexcept {
        return m_host->FileSystems().Tap()->TakeCallback();
    }

private:
    void SetUp();

    Tests::TemporaryFolder m_profile;
    Qorv::ComPtr<DevHost::MainInstance> m_instance;
    Qorv::ComPtr<MeasuredHost> m_host;
    DevHost::ModuleLoader m_module;
    Qorv::ComPtr<Qorv::IQorv_Plugin> m_plugin;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Qorv::ComPtr<Qorv::IAFS_Name> m_root;
    bool m_is_unloaded = false;
    double m_load_time = 0;
    double m_library_time = 0;
};

} // namespace Bench
