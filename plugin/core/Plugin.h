#pragma once

#include "core/host/HostServices.h"
#include "qorv/CoClass.h"

/// The plug-in: one object for each load of the module. The host drives it on its main thread, through the life cycle
/// that `Qorv::IQorv_Plugin` describes.
class Plugin final : public Qorv::CoClass<Plugin, HostServices> {
public:
    Plugin();
    ~Plugin();

    HRESULT STDMETHODCALLTYPE get__GUID(GUID* o_guid) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CopyrightInfo(BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_version(ULONG* o_version) noexcept override;
    HRESULT STDMETHODCALLTYPE get_VendorID(ULONG* o_id) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Description(BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_LegalInfo(BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Publisher(BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Features(ULONG* o_features) noexcept override;
    HRESULT STDMETHODCALLTYPE Setup(Qorv::IQorv_Inst* pInst) noexcept override;
    HRESULT STDMETHODCALLTYPE RegisterExts() noexcept override;
    HRESULT STDMETHODCALLTYPE FinalizeRegistering() noexcept override;
    HRESULT STDMETHODCALLTYPE Init() noexcept override;
    HRESULT STDMETHODCALLTYPE Unload() noexcept override;
    HRESULT STDMETHODCALLTYPE ShowPrefsDlg(HWND i_parent_window) noexcept override;
    HRESULT STDMETHODCALLTYPE ImportAdditionalData(IStream* i_source) noexcept override;
    HRESULT STDMETHODCALLTYPE ExportAdditionalData(IStream* i_destination) noexcept override;
    HRESULT STDMETHODCALLTYPE ResetSettings() noexcept override;

    EventsHandler* GetEventsHandler() const noexcept override { return m_events_handler; }
    Qorv::ComPtr<FileSystem> GetFileSystem() const override;
    Qorv::IUIX_Image* GetIcon() const noexcept override { return m_icon; }

    // Null before the step that creates them. All but the icon are null again after `Unload`.
    Qorv::ComPtr<EventsHandler> m_events_handler;
    GuardedPtr<FileSystem> m_file_system;
    Qorv::ComPtr<Qorv::IUIX_Image> m_icon; ///< Null when the icons cannot be loaded.

private:
    HRESULT InitSettings() noexcept;
};
