#pragma once

#include "base/Failure.h"

#include <filesystem>

namespace DevHost {

/// A plug-in left something behind.
class LeakFailure : public Failure {
public:
    explicit LeakFailure(std::wstring i_text) : Failure(E_UNEXPECTED, std::move(i_text)) {}
};

/// A plug-in's module in this process.
class ModuleLoader {
public:
    ModuleLoader() noexcept = default;
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    /// Loads the module and creates a plug-in object. Throws a `Failure`.
    Qorv::ComPtr<Qorv::IQorv_Plugin> Load(const std::filesystem::path& i_path);

    /// Frees the module; all its objects must have been released. Throws a `LeakFailure` if it stays in the process.
    void Free();

    bool IsLoaded() const noexcept { return m_module != nullptr; }

private:
    std::filesystem::path m_path;
    HMODULE m_module = nullptr;
};

} // namespace DevHost
