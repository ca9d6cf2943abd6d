#include "host/ModuleLoader.h"

#include "base/Unicode.h"
#include "wine/WineNetwork.h"

#include <bit>
#include <utility>

namespace DevHost {

ModuleLoader::~ModuleLoader() {
    if (m_module != nullptr)
        FreeLibrary(m_module);
}

Qorv::ComPtr<Qorv::IQorv_Plugin> ModuleLoader::Load(const std::filesystem::path& i_path) {
    m_path = i_path;
    m_module = LoadLibraryW(i_path.c_str());
    if (m_module == nullptr)
        throw LastErrorFailure(L"Cannot load " + i_path.wstring());
    try {
        RedirectModuleImports(m_module);
    } catch (const std::runtime_error& error) {
        throw Failure(E_FAIL, L"Cannot prepare " + i_path.wstring() + L": " + FromUtf8(error.what()));
    }
    const FARPROC entry = GetProcAddress(m_module, Qorv::GetPluginName);
    if (entry == nullptr)
        throw Failure(HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND), i_path.wstring() + L" isn't a plug-in");
    const auto get_plugin = std::bit_cast<Qorv::GetPluginFunction>(entry);
    Qorv::ComPtr<Qorv::IQorv_Plugin> plugin;
    Check(get_plugin(nullptr, nullptr, &plugin), L"Cannot create the plug-in");
    return plugin;
}

void ModuleLoader::Free() {
    FreeLibrary(std::exchange(m_module, nullptr));
    if (GetModuleHandleW(m_path.filename().c_str()) != nullptr)
        throw LeakFailure(L"The plug-in's module stays in the process after it was freed");
}

} // namespace DevHost
