#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "services/AuxiliaryService.h"
#include "services/CabFile.h"
#include "services/EventServer.h"
#include "services/FileSystemService.h"
#include "services/Localization.h"
#include "services/MainThreadQueue.h"
#include "uix/UiService.h"

#include <filesystem>
#include <map>
#include <string>

namespace DevHost {

/// The host's main instance: all that a plug-in sees of the host. It stores its data in the profile's folders
/// `settings`, `keys` and `cache`. Create it on the main thread, which must have initialized COM; `qorv/Host.h` gives
/// the threads for each method.
class MainInstance final : public Qorv::CoClass<MainInstance, Qorv::IQorv_Inst> {
public:
    /// Without a sink, the services' notices are lost.
    explicit MainInstance(
        std::filesystem::path i_profile, NoticeSink i_notice = [](const std::wstring&) {});

    HRESULT STDMETHODCALLTYPE GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                Qorv::IAUX_CabNode** o_settings) noexcept override;
    HRESULT STDMETHODCALLTYPE GetCryptKey(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                          Qorv::IAUX_CryptKey** o_key) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateStdBindContext(Qorv::IAFS_BindContext** o_context) noexcept override;
    /// E_INVALIDARG for an unknown id.
    HRESULT STDMETHODCALLTYPE GetLocalStr(Qorv::PCStr i_id, BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE MergeLocalization(IStream* i_table) noexcept override;
    HRESULT STDMETHODCALLTYPE StringToID(Qorv::PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept override;
    HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                  DWORD i_wait) noexcept override;
    HRESULT STDMETHODCALLTYPE get_MainFrameWnd(HWND* o_window) noexcept override;

    FileSystemService& FileSystems() const noexcept { return *m_file_systems; }
    EventServer& Events() const noexcept { return *m_events; }
    MainThreadQueue& MainThread() noexcept { return m_main_thread; }

    /// Saves the plug-ins' settings. Throws a `Failure`.
    void SaveSettings() const;

    /// Ends the host, after the plug-ins' `Unload`: releases every plug-in object that is still held.
    void Close();

private:
    struct Settings {
        CabFile file;
        CabNode::Node dictionary;
    };

    template <typename Body>
    HRESULT AnswerAndTell(Body&& i_body) const noexcept;

    std::filesystem::path m_profile;
    NoticeSink m_notice;
    MainThreadQueue m_main_thread;
    Localization m_localization;
    Qorv::ComPtr<EventServer> m_events;
    Qorv::ComPtr<FileSystemService> m_file_systems;
    Qorv::ComPtr<AuxiliaryService> m_auxiliary;
    Qorv::ComPtr<UiService> m_ui;
    std::map<std::wstring, Settings> m_settings; ///< By the plug-in's id.
};

} // namespace DevHost
