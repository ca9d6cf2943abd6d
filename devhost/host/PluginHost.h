#pragma once

#include "host/MainInstance.h"
#include "host/ModuleLoader.h"

#include <filesystem>

namespace DevHost {

/// The host with its one plug-in: takes it through its life in the documented order. Main thread only.
class PluginHost {
public:
    /// Loads the plug-in and sets it up. Throws a `Failure` after unloading the plug-in as far as it got.
    PluginHost(const std::filesystem::path& i_profile, const std::filesystem::path& i_module, NoticeSink i_notice);
    ~PluginHost();

    Qorv::IQorv_Plugin& Plugin() const noexcept { return *m_plugin; }
    Qorv::IAFS_FileSys& FileSystem() const noexcept { return *m_file_system; }
    MainInstance& Host() const noexcept { return *m_host; }
    FilesCache& Cache() const noexcept { return *m_host->FileSystems().CacheOf(m_file_system); }

    /// Ends the plug-in; all its objects must have been released. Throws a `LeakFailure` if objects or the module
    /// itself remain. A second call does nothing.
    void Unload();

private:
    void SetUp();

    Qorv::ComPtr<MainInstance> m_host;
    ModuleLoader m_module;
    Qorv::ComPtr<Qorv::IQorv_Plugin> m_plugin;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
};

} // namespace DevHost
