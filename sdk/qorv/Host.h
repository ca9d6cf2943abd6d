#pragma once

#include "qorv/Base.h"

// The host's main instance, and a plug-in's interface to the host.
//
// Life of a plug-in: load the module, `Qorce_GetPlugin`, identity getters, `Setup`, `RegisterExts`,
// `FinalizeRegistering`, `Init`, work, `Unload`, last `Release`, free the module. The host calls all of it on its main
// thread, which it has initialized for OLE (`OleInitialize`). `Unload` follows even if an earlier step failed: only it
// breaks the reference cycles between the plug-in and what it registered. Every object of the plug-in is released
// before the module is freed.

namespace Qorv {

struct IAUX_CabNode;
struct IAUX_CryptKey;
struct IAFS_BindContext;
struct IQorv_Inst;

/// Where an operation writes what the user should know about its failure. May be called on any thread; parameters of
/// this type may be null.
struct IQorv_ErrorDetails : IUnknown {
    static constexpr IID Id = {0xe2f9772f, 0x13d5, 0x4ff2, {0x87, 0x2b, 0x71, 0xce, 0xbb, 0x62, 0xcd, 0x75}};
    /// The code that the operation will return, and the reason in words.
    virtual HRESULT STDMETHODCALLTYPE SetError(HRESULT i_code, PCStr i_text) = 0;
};

/// Tells a running operation that its caller has cancelled. Set on one thread, read on another.
struct IQorv_CancelFlag : IUnknown {
    static constexpr IID Id = {0x9bd2dbc0, 0xcf9c, 0x48f4, {0xa9, 0xfa, 0xa1, 0x0a, 0xef, 0x6a, 0xf0, 0xcd}};
    virtual HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) = 0;
};

/// What `ExecuteOnMainThread` runs.
struct IQorv_ThreadSafeCallback : IUnknown {
    static constexpr IID Id = {0x79d2c72e, 0xfb32, 0x4684, {0xa8, 0x7c, 0x7f, 0x36, 0x13, 0x61, 0x60, 0x44}};
    virtual HRESULT STDMETHODCALLTYPE OnExecute() = 0;
};

/// A subscriber to host events.
struct IEventHandler : IDispatch {
    static constexpr IID Id = {0xb278857a, 0xe4cd, 0x4c89, {0xae, 0x36, 0xcf, 0x10, 0x2c, 0x52, 0x0e, 0x7a}};
    /// `i_sender` and `i_arguments` may be null; both are only valid during the call.
    virtual HRESULT STDMETHODCALLTYPE OnEvent(ULONG i_event, IUnknown* i_sender, IUnknown* i_arguments) = 0;
};

/// The host's events. Main thread only. Holds a reference to each handler until it is unregistered or the host ends.
struct IQorv_EventServer : IUnknown {
    static constexpr IID Id = {0xe194c6f3, 0xa1b5, 0x462e, {0x8b, 0x96, 0xf6, 0xff, 0xfb, 0xb1, 0x2f, 0x9f}};
    virtual HRESULT STDMETHODCALLTYPE RegisterNativeEventHandler(ULONG i_event, IEventHandler* i_handler,
                                                                 ULONG i_flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnregisterNativeEventHandler(ULONG i_event, IEventHandler* i_handler) = 0;
};

/// A plug-in. The getters may be called in any order, even before `Setup`.
struct IQorv_Plugin : IUnknown {
    static constexpr IID Id = {0x3077CBDA, 0x34BB, 0x4DBE, {0xBE, 0x4D, 0x4D, 0xA0, 0x35, 0xCB, 0x49, 0xBA}};
    virtual HRESULT STDMETHODCALLTYPE get__GUID(GUID* o_guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR* o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CopyrightInfo(BSTR* o_text) = 0;
    /// High word major, low word minor.
    virtual HRESULT STDMETHODCALLTYPE get_version(ULONG* o_version) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_VendorID(ULONG* o_id) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Description(BSTR* o_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LegalInfo(BSTR* o_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Publisher(BSTR* o_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Features(ULONG* o_features) = 0;
    virtual HRESULT STDMETHODCALLTYPE Setup(IQorv_Inst* pInst) = 0;
    virtual HRESULT STDMETHODCALLTYPE RegisterExts() = 0;
    virtual HRESULT STDMETHODCALLTYPE FinalizeRegistering() = 0;
    virtual HRESULT STDMETHODCALLTYPE Init() = 0;
    virtual HRESULT STDMETHODCALLTYPE Unload() = 0;
    virtual HRESULT STDMETHODCALLTYPE ShowPrefsDlg(HWND i_parent_window) = 0;
    virtual HRESULT STDMETHODCALLTYPE ImportAdditionalData(IStream* i_source) = 0;
    virtual HRESULT STDMETHODCALLTYPE ExportAdditionalData(IStream* i_destination) = 0;
    virtual HRESULT STDMETHODCALLTYPE ResetSettings() = 0;
};

/// The host's main instance. Each method says on which threads it may be called. Other threads' calls for the main
/// thread arrive there as messages to a window of the host, so every message loop runs them, including a dialog's.
struct IQorv_Inst : IUnknown {
    static constexpr IID Id = {0x3a025b22, 0x5181, 0x4299, {0x9b, 0xf2, 0x08, 0xf5, 0xf3, 0xb6, 0xa8, 0x1c}};
    /// A service by name: "AFS" (`IAFS_Inst`), "AUX" (`IAUX_Inst`), "UIX" (`IUIX_Inst`). The result is the service's
    /// own interface, so a caller may cast the pointer; E_INVALIDARG for an unknown name. Main thread.
    virtual HRESULT STDMETHODCALLTYPE GetExtension(PCStr i_name, IUnknown** o_service) = 0;
    /// The settings dictionary of a plug-in; S_OK and null if there is none and none should be created. Main thread.
    virtual HRESULT STDMETHODCALLTYPE GetPluginSettings(IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                        IAUX_CabNode** o_settings) = 0;
    /// The key with which the host encrypts a plug-in's texts. It exists once the plug-in is loaded. Main thread.
    virtual HRESULT STDMETHODCALLTYPE GetCryptKey(IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                  IAUX_CryptKey** o_key) = 0;
    /// A new one. Any thread.
    virtual HRESULT STDMETHODCALLTYPE CreateStdBindContext(IAFS_BindContext** o_context) = 0;
    /// A text of the merged localization tables, by an id such as "db.str.fileSystemName". Any thread.
    virtual HRESULT STDMETHODCALLTYPE GetLocalStr(PCStr i_id, BSTR* o_text) = 0;
    /// Adds a localization table (an XML document, read from the stream's position to its end). Any thread.
    virtual HRESULT STDMETHODCALLTYPE MergeLocalization(IStream* i_table) = 0;
    /// The number of an event name; an unknown name gets one when `i_create` is true, else E_INVALIDARG. Main
    /// thread.
    virtual HRESULT STDMETHODCALLTYPE StringToID(PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) = 0;
    /// Main thread.
    virtual HRESULT STDMETHODCALLTYPE get_EventServer(IQorv_EventServer** o_server) = 0;
    /// Runs the callback on the main thread and waits for it, at most `i_wait` milliseconds (0xFFFFFFFF: without
    /// limit). On the main thread itself it runs at once. Returns the callback's result. Any thread.
    virtual HRESULT STDMETHODCALLTYPE ExecuteOnMainThread(IQorv_ThreadSafeCallback* i_callback, DWORD i_wait) = 0;
    /// The owner for modal windows; null if the host has none. Main thread.
    virtual HRESULT STDMETHODCALLTYPE get_MainFrameWnd(HWND* o_window) = 0;
};

/// The one export of a plug-in's module, `Qorce_GetPlugin`. Both reserved arguments are null.
using GetPluginFunction = HRESULT(STDMETHODCALLTYPE*)(void* reserved1, void* reserved2, IQorv_Plugin** output_plugin);
inline constexpr char GetPluginName[] = "Qorce_GetPlugin";

} // namespace Qorv
