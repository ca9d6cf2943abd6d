#pragma once

#include "qorv/Afs.h"
#include "qorv/AuxService.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "qorv/Uix.h"

class EventsHandler;
class FileSystem;

/// The plug-in: one object for each load of the module. The host drives it through the life cycle that
/// `Qorv::IQorv_Plugin` describes, on its main thread. The other classes of the plug-in reach the host through the
/// members.
class Plugin final : public Qorv::CoClass<Plugin, Qorv::IQorv_Plugin> {
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

    // Null before `Setup`, or before the step that makes them; all but the icon are null again after `Unload`.
    Qorv::ComPtr<Qorv::IQorv_Inst> m_qorv_inst;
    Qorv::ComPtr<Qorv::IAFS_Inst> m_afs_inst;
    Qorv::ComPtr<Qorv::IAUX_Inst> m_aux_inst;
    Qorv::ComPtr<Qorv::IUIX_Inst> m_uix_inst;
    Qorv::ComPtr<EventsHandler> m_events_handler;
    Qorv::ComPtr<FileSystem> m_file_system;
    Qorv::ComPtr<Qorv::IUIX_Image> m_icon; ///< Null when the icons cannot be loaded.

private:
    HRESULT InitSettings() noexcept;
};
