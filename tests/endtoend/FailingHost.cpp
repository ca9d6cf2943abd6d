#include "FailingHost.h"

namespace Tests {
namespace {

constexpr HRESULT failure = HRESULT_FROM_WIN32(ERROR_NOT_READY);

/// An AFS service that registers nothing.
class RefusingFileSystems final : public Qorv::CoClass<RefusingFileSystems, Qorv::IAFS_Inst> {
public:
    HRESULT STDMETHODCALLTYPE RegisterFileSys(Qorv::IAFS_FileSys*) noexcept override { return failure; }
    HRESULT STDMETHODCALLTYPE UnregisterFileSys(Qorv::IAFS_FileSys*) noexcept override { return failure; }
    HRESULT STDMETHODCALLTYPE GetFilesCache(Qorv::IAFS_FileSys*, Qorv::IAFS_FilesCache**) noexcept override {
        return failure;
    }
    HRESULT STDMETHODCALLTYPE CreateDlgDefaultParams(ULONG, Qorv::IAUX_CabNode**) noexcept override { return failure; }
};

} // namespace

FailingHost::FailingHost(Qorv::ComPtr<DevHost::MainInstance> i_host, std::wstring i_failing_call)
    : m_host(std::move(i_host)), m_failing_call(std::move(i_failing_call)) {}

FailingHost::~FailingHost() = default;

HRESULT STDMETHODCALLTYPE FailingHost::GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept {
    if (m_failing_call == i_name)
        return failure;
    if (m_failing_call != L"RegisterFileSys" || std::wstring_view(i_name) != L"AFS")
        return m_host->GetExtension(i_name, o_service);
    Qorv::ComPtr<Qorv::IAFS_Inst> service(Qorv::Create<RefusingFileSystems>());
    *o_service = service.Detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE FailingHost::GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                         Qorv::IAUX_CabNode** o_settings) noexcept {
    return m_failing_call == L"GetPluginSettings" ? failure : m_host->GetPluginSettings(i_plugin, i_create, o_settings);
}

HRESULT STDMETHODCALLTYPE FailingHost::GetCryptKey(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                   Qorv::IAUX_CryptKey** o_key) noexcept {
    return m_host->GetCryptKey(i_plugin, i_create, o_key);
}

HRESULT STDMETHODCALLTYPE FailingHost::CreateStdBindContext(Qorv::IAFS_BindContext** o_context) noexcept {
    return m_host->CreateStdBindContext(o_context);
}

HRESULT STDMETHODCALLTYPE FailingHost::GetLocalStr(Qorv::PCStr i_id, BSTR* o_text) noexcept {
    return m_host->GetLocalStr(i_id, o_text);
}

HRESULT STDMETHODCALLTYPE FailingHost::MergeLocalization(IStream* i_table) noexcept {
    return m_host->MergeLocalization(i_table);
}

HRESULT STDMETHODCALLTYPE FailingHost::StringToID(Qorv::PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) noexcept {
    return m_host->StringToID(i_name, i_create, o_id);
}

HRESULT STDMETHODCALLTYPE FailingHost::get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept {
    return m_failing_call == L"get_EventServer" ? failure : m_host->get_EventServer(o_server);
}

HRESULT STDMETHODCALLTYPE FailingHost::ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                           DWORD i_wait) noexcept {
    return m_host->ExecuteOnMainThread(i_callback, i_wait);
}

HRESULT STDMETHODCALLTYPE FailingHost::get_MainFrameWnd(HWND* o_window) noexcept {
    return m_host->get_MainFrameWnd(o_window);
}

const char* FailingStep(Qorv::IQorv_Plugin& io_plugin, Qorv::IQorv_Inst* i_host) {
    if (FAILED(io_plugin.Setup(i_host)))
        return "Setup";
    if (FAILED(io_plugin.RegisterExts()))
        return "RegisterExts";
    if (FAILED(io_plugin.FinalizeRegistering()))
        return "FinalizeRegistering";
    return FAILED(io_plugin.Init()) ? "Init" : "";
}

} // namespace Tests
