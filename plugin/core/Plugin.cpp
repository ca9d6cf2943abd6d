#include "core/Plugin.h"

#include "afs/FileSystem.h"
#include "core/EventsHandler.h"
#include "core/PluginIcon.h"
#include "core/Version.h"
#include "core/host/Cab.h"
#include "core/host/Resource.h"
#include "core/trace/Check.h"
#include "qorv/Values.h"

namespace {

constexpr GUID plugin_guid = {0xA2EF94E6, 0x73C0, 0x4A9F, {0x8C, 0x82, 0x47, 0xA8, 0xC0, 0x41, 0x22, 0xFE}};
constexpr ULONG plugin_version = DROPBOX_VERSION_MAJOR << 16 | DROPBOX_VERSION_MINOR;
constexpr ULONG vendor_id = 0;
constexpr ULONG no_optional_features = 0;
constexpr wchar_t plugin_name[] = L"Dropbox";
// The wording is deliberate.
constexpr wchar_t description[] = L"Dropbox plugin allows users work with in files located in Dropbox.";
constexpr wchar_t publisher[] = L"Talvern Soft";
constexpr wchar_t copyright[] = L"Copyright (C) 2026 Talvern Soft\nAll rights reserved";

} // namespace

/// Answers a getter: stores the value in `o_value`. The check logs the argument under its own name.
#define RETURN_VALUE(o_value, value)                                                                                   \
    CHECK_RETURN(o_value != nullptr, E_POINTER);                                                                       \
    *o_value = value;                                                                                                  \
    return TRACE_RESULT(S_OK)

/// The same for a text. The caller gets its own copy.
#define RETURN_STRING(o_text, text)                                                                                    \
    CHECK_RETURN(o_text != nullptr, E_POINTER);                                                                        \
    *o_text = SysAllocString(text);                                                                                    \
    CHECK_RETURN(*o_text != nullptr, E_OUTOFMEMORY);                                                                   \
    return TRACE_RESULT(S_OK)

Plugin::Plugin() {
    TRACE_FUNCTION();
}

Plugin::~Plugin() {
    TRACE_FUNCTION();
}

Qorv::ComPtr<FileSystem> Plugin::GetFileSystem() const {
    TRACE_FUNCTION();
    return m_file_system.Get();
}

HRESULT STDMETHODCALLTYPE Plugin::get__GUID(GUID* o_guid) noexcept {
    TRACE_FUNCTION();
    RETURN_VALUE(o_guid, plugin_guid);
}

HRESULT STDMETHODCALLTYPE Plugin::get_Name(BSTR* o_name) noexcept {
    TRACE_FUNCTION();
    RETURN_STRING(o_name, plugin_name);
}

HRESULT STDMETHODCALLTYPE Plugin::get_CopyrightInfo(BSTR* o_text) noexcept {
    TRACE_FUNCTION();
    RETURN_STRING(o_text, copyright);
}

HRESULT STDMETHODCALLTYPE Plugin::get_version(ULONG* o_version) noexcept {
    TRACE_FUNCTION();
    RETURN_VALUE(o_version, plugin_version);
}

HRESULT STDMETHODCALLTYPE Plugin::get_VendorID(ULONG* o_id) noexcept {
    TRACE_FUNCTION();
    RETURN_VALUE(o_id, vendor_id);
}

HRESULT STDMETHODCALLTYPE Plugin::get_Description(BSTR* o_text) noexcept {
    TRACE_FUNCTION();
    RETURN_STRING(o_text, description);
}

HRESULT STDMETHODCALLTYPE Plugin::get_LegalInfo(BSTR* o_text) noexcept {
    TRACE_FUNCTION();
    RETURN_STRING(o_text, copyright);
}

HRESULT STDMETHODCALLTYPE Plugin::get_Publisher(BSTR* o_text) noexcept {
    TRACE_FUNCTION();
    RETURN_STRING(o_text, publisher);
}

HRESULT STDMETHODCALLTYPE Plugin::get_Features(ULONG* o_features) noexcept {
    TRACE_FUNCTION();
    RETURN_VALUE(o_features, no_optional_features);
}

HRESULT STDMETHODCALLTYPE Plugin::Setup(Qorv::IQorv_Inst* pInst) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(pInst != nullptr, E_INVALIDARG);
        m_qorv_inst = pInst;
        CHECK_HRESULT(m_qorv_inst->GetExtension(L"AFS", (IUnknown**)&m_afs_inst));
        CHECK_HRESULT(m_qorv_inst->GetExtension(L"AUX", (IUnknown**)&m_aux_inst));
        CHECK_HRESULT(m_qorv_inst->GetExtension(L"UIX", (IUnknown**)&m_uix_inst));
        m_icon = LoadPluginIcon(m_uix_inst);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE Plugin::RegisterExts() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(m_afs_inst != nullptr, E_UNEXPECTED);
        m_file_system = Qorv::Create<FileSystem>(m_afs_inst, this);
        CHECK_RETURN(m_file_system != nullptr, E_OUTOFMEMORY);
        CHECK_HRESULT(m_afs_inst->RegisterFileSys(m_file_system));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE Plugin::FinalizeRegistering() noexcept {
    TRACE_FUNCTION();
    const auto strings = Resource(MAKEINTRESOURCEW(IDR_STRINGS_XML), L"XML").OpenStream();
    if (strings != nullptr && m_qorv_inst != nullptr)
        m_qorv_inst->MergeLocalization(strings); // The plug-in also works without its texts.
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Plugin::Init() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(InitSettings());
        m_events_handler = Qorv::Create<EventsHandler>(this);
        CHECK_RETURN(m_events_handler != nullptr, E_OUTOFMEMORY);
        CHECK_HRESULT(m_events_handler->Init());
        return TRACE_RESULT(S_OK);
    };
}

HRESULT Plugin::InitSettings() noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(m_qorv_inst != nullptr, E_UNEXPECTED);
    Qorv::ComPtr<Qorv::IAUX_CabNode> settings;
    CHECK_HRESULT(m_qorv_inst->GetPluginSettings(this, VARIANT_TRUE, &settings));
    if (settings != nullptr) // The plug-in only reserves the layout. It neither reads nor writes its fields.
        ApplyCabTemplate(m_aux_inst, settings, MAKEINTRESOURCEW(IDR_SETTINGS_CAB_XML), L"Root");
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Plugin::Unload() noexcept {
    TRACE_FUNCTION();
    if (m_afs_inst != nullptr && m_file_system != nullptr)
        m_afs_inst->UnregisterFileSys(m_file_system);
    if (m_file_system != nullptr)
        m_file_system->Shutdown();
    if (m_events_handler != nullptr)
        m_events_handler->Shutdown();
    m_file_system.Reset();
    m_afs_inst.Reset();
    m_aux_inst.Reset();
    m_qorv_inst.Reset();
    m_uix_inst.Reset();
    m_events_handler.Reset();
    // Keep the icon until the plug-in is destroyed: the host may still show it.
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Plugin::ShowPrefsDlg(HWND) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE Plugin::ImportAdditionalData(IStream*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE Plugin::ExportAdditionalData(IStream*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE Plugin::ResetSettings() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}
