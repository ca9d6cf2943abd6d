// A plug-in that misbehaves as the environment variables say: SCRIPTED_PLUGIN_FAILS names the step that fails,
// SCRIPTED_PLUGIN_LEAKS is "object" or "module". It writes the calls that it receives to SCRIPTED_PLUGIN_CALLS.

#include "UnusedInterfaces.h"
#include "base/Failure.h"

#include <wininet.h>

#include <array>
#include <string>

namespace {

std::wstring Variable(const wchar_t* i_name) {
    std::array<wchar_t, 1024> value{};
    GetEnvironmentVariableW(i_name, value.data(), DWORD{value.size()});
    return value.data();
}

/// Records a step, and fails if it is the chosen one.
HRESULT Step(const std::wstring& i_name) {
    SetEnvironmentVariableW(L"SCRIPTED_PLUGIN_CALLS", (Variable(L"SCRIPTED_PLUGIN_CALLS") + i_name + L";").c_str());
    return Variable(L"SCRIPTED_PLUGIN_FAILS") == i_name ? E_ACCESSDENIED : S_OK;
}

class FileSystem final : public Tests::UnusedFileSystem<FileSystem> {
public:
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* o_name) noexcept override {
        return DevHost::AnswerText(L"Dropbox", o_name);
    }
};

class Plugin final : public Tests::UnusedPlugin<Plugin> {
public:
    HRESULT STDMETHODCALLTYPE get__GUID(GUID* o_guid) noexcept override {
        *o_guid = Qorv::IQorv_Plugin::Id;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Setup(Qorv::IQorv_Inst* pInst) noexcept override {
        m_host = pInst;
        return Step(L"Setup");
    }
    HRESULT STDMETHODCALLTYPE RegisterExts() noexcept override {
        m_host->GetExtension(L"AFS", reinterpret_cast<IUnknown**>(&m_service));
        m_service->RegisterFileSys(m_file_system);
        return Step(L"RegisterExts");
    }
    HRESULT STDMETHODCALLTYPE FinalizeRegistering() noexcept override { return Step(L"FinalizeRegistering"); }
    HRESULT STDMETHODCALLTYPE Init() noexcept override { return Step(L"Init"); }
    HRESULT STDMETHODCALLTYPE Unload() noexcept override {
        if (Variable(L"SCRIPTED_PLUGIN_LEAKS") == L"object")
            m_file_system->AddRef();
        return Step(L"Unload"); // The file system stays registered: the host releases it by itself.
    }

private:
    Qorv::ComPtr<Qorv::IQorv_Inst> m_host;
    Qorv::ComPtr<Qorv::IAFS_Inst> m_service;
    Qorv::ComPtr<FileSystem> m_file_system = Qorv::Create<FileSystem>();
};

/// Never called: the host redirects these imports, so they must exist.
void UseImports() {
    DWORD written = 0;
    HttpSendRequestExW(nullptr, nullptr, nullptr, 0, 0);
    InternetWriteFile(nullptr, nullptr, 0, &written);
    HttpEndRequestW(nullptr, nullptr, 0, 0);
    InternetCloseHandle(nullptr);
}

} // namespace

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE
    Qorce_GetPlugin(void*, void*, Qorv::IQorv_Plugin** output_plugin) {
    if (Variable(L"SCRIPTED_PLUGIN_LEAKS") == L"module")
        LoadLibraryW(L"ScriptedPlugin.qvp"); // One reference to the module too many.
    if (Variable(L"SCRIPTED_PLUGIN_LEAKS") == L"never")
        UseImports();
    *output_plugin = Qorv::Create<Plugin>().Detach();
    return Step(L"Qorce_GetPlugin");
}
