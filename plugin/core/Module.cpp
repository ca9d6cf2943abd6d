#include "core/Plugin.h"
#include "core/host/Resource.h"
#include "core/trace/Check.h"

extern "C" {

/// The module's one export: a new plug-in object for the host. Both reserved arguments are ignored.
HRESULT STDMETHODCALLTYPE Qorce_GetPlugin(void* reserved1, void* reserved2,
                                          Qorv::IQorv_Plugin** output_plugin) noexcept;

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved);
}

HRESULT STDMETHODCALLTYPE Qorce_GetPlugin(void*, void*, Qorv::IQorv_Plugin** output_plugin) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(output_plugin != nullptr, E_POINTER);
        *output_plugin = nullptr;
        const auto p = Qorv::Create<Plugin>();
        CHECK_RETURN(p != nullptr, E_OUTOFMEMORY);
        CHECK_HRESULT(p->QueryInterface<Qorv::IQorv_Plugin>(output_plugin));
        return TRACE_RESULT(S_OK);
    };
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    TRACE_FUNCTION();
    if (reason == DLL_PROCESS_ATTACH) {
        InitLog();
        g_module = module;
    } else if (reason == DLL_PROCESS_DETACH) {
        CloseLog();
    }
    return TRACE_RESULT(TRUE);
}
