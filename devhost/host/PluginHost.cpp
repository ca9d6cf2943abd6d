#include "host/PluginHost.h"

#include "qorv/CoClass.h"

namespace DevHost {
namespace {

constexpr wchar_t file_system_id[] = L"Dropbox";

} // namespace

PluginHost::PluginHost(const std::filesystem::path& i_profile, const std::filesystem::path& i_module,
                       NoticeSink i_notice)
    : m_host(Qorv::Create<MainInstance>(i_profile, std::move(i_notice))) {
    try {
        m_plugin = m_module.Load(i_module);
        SetUp();
    } catch (...) {
        Answer([&] { Unload(); }); // The first failure shows what is wrong.
        throw;
    }
}

PluginHost::~PluginHost() {
    Answer([&] { Unload(); });
}

void PluginHost::SetUp() {
    // The plug-in only ever asks for a key that exists.
    Qorv::ComPtr<Qorv::IAUX_CryptKey> key;
    Check(m_host->GetCryptKey(m_plugin, VARIANT_TRUE, &key), L"Cannot make the plug-in's key");
    Check(m_plugin->Setup(m_host), L"The plug-in's Setup failed");
    Check(m_plugin->RegisterExts(), L"The plug-in's RegisterExts failed");
    Check(m_plugin->FinalizeRegistering(), L"The plug-in's FinalizeRegistering failed");
    Check(m_plugin->Init(), L"The plug-in's Init failed");
    m_file_system = m_host->FileSystems().Find(file_system_id);
    if (m_file_system == nullptr)
        throw Failure(E_UNEXPECTED, L"The plug-in registered no file system");
}

void PluginHost::Unload() {
    if (!m_module.IsLoaded())
        return;
    Qorv::ILiveObjects* live_objects = nullptr; // Not counted: it is valid until the module is freed.
    if (m_plugin != nullptr) {
        m_plugin->QueryInterface(Qorv::ILiveObjects::Id, reinterpret_cast<void**>(&live_objects));
        m_plugin->Unload();
    }
    const HRESULT saved = Answer([&] { m_host->SaveSettings(); });
    m_host->Close();
    m_file_system.Reset();
    m_plugin.Reset();
    const ULONG left = live_objects != nullptr ? live_objects->GetCount() : 0;
    if (left != 0)
        throw LeakFailure(L"The plug-in left " + std::to_wstring(left) + L" objects behind");
    m_module.Free();
    Check(saved, L"Cannot keep the plug-in's settings");
}

} // namespace DevHost
