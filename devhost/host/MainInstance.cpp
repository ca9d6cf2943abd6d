#include "host/MainInstance.h"

#include "base/Failure.h"
#include "base/StreamReader.h"
#include "services/BindContext.h"
#include "services/CryptKey.h"
#include "services/ErrorDetails.h"

#include <array>

namespace DevHost {
namespace {

/// A plug-in's id as the name of its files, "{...}".
std::wstring IdOf(Qorv::IQorv_Plugin* i_plugin) {
    GUID guid{};
    Check(i_plugin->get__GUID(&guid), L"Cannot read the plug-in's id");
    std::array<wchar_t, 40> text{};
    StringFromGUID2(guid, text.data(), int{text.size()});
    return text.data();
}

/// The texts that plug-ins expect the host to have.
constexpr char host_texts[] = R"(<localization language="en" namespace="btn">
    <string id="cancel">Cancel</string>
</localization>)";

} // namespace

MainInstance::MainInstance(std::filesystem::path i_profile, NoticeSink i_notice)
    : m_profile(std::move(i_profile))
    , m_notice(std::move(i_notice))
    , m_events(Qorv::Create<EventServer>())
    , m_file_systems(Qorv::Create<FileSystemService>(m_profile / L"cache", m_notice))
    , m_auxiliary(Qorv::Create<AuxiliaryService>())
    , m_ui(Qorv::Create<UiService>(m_localization, m_notice)) {
    m_localization.Merge(host_texts);
}

HRESULT STDMETHODCALLTYPE MainInstance::GetExtension(Qorv::PCStr i_name, IUnknown** o_service) noexcept {
    if (o_service == nullptr)
        return E_POINTER;
    *o_service = nullptr;
    const std::wstring_view name = i_name != nullptr ? i_name : L"";
    // Callers cast the pointer, so it must be the service's own interface.
    if (name == L"AFS")
        *o_service = static_cast<Qorv::IAFS_Inst*>(m_file_systems);
    else if (name == L"AUX")
        *o_service = static_cast<Qorv::IAUX_Inst*>(m_auxiliary);
    else if (name == L"UIX")
        *o_service = static_cast<Qorv::IUIX_Inst*>(m_ui);
    else
        return E_INVALIDARG;
    (*o_service)->AddRef();
    return S_OK;
}

/// Runs a call that cannot return a reason for its failure. The user is told instead which file is concerned.
template <typename Body>
HRESULT MainInstance::AnswerAndTell(Body&& i_body) const noexcept {
    const auto said = Qorv::Create<ErrorDetails>();
    const HRESULT result = Answer(said, i_body);
    if (FAILED(result))
        m_notice(said->Text());
    return result;
}

HRESULT STDMETHODCALLTYPE MainInstance::GetPluginSettings(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                          Qorv::IAUX_CabNode** o_settings) noexcept {
    if (o_settings == nullptr || i_plugin == nullptr)
        return E_POINTER;
    *o_settings = nullptr;
    return AnswerAndTell([&] {
        const std::wstring id = IdOf(i_plugin);
        auto found = m_settings.find(id);
        if (found == m_settings.end()) {
            CabFile file(m_profile / L"settings" / (id + L".json"));
            if (i_create == VARIANT_FALSE && !file.Exists())
                return;
            found = m_settings.emplace(id, Settings{file, file.Load()}).first;
        }
        *o_settings = CabNode::Node(found->second.dictionary).Detach();
    });
}

HRESULT STDMETHODCALLTYPE MainInstance::GetCryptKey(Qorv::IQorv_Plugin* i_plugin, VARIANT_BOOL i_create,
                                                    Qorv::IAUX_CryptKey** o_key) noexcept {
    if (o_key == nullptr || i_plugin == nullptr)
        return E_POINTER;
    *o_key = nullptr;
    return AnswerAndTell([&] {
        *o_key = CryptKey::Load(m_profile / L"keys" / (IdOf(i_plugin) + L".key"), i_create != VARIANT_FALSE).Detach();
    });
}

HRESULT STDMETHODCALLTYPE MainInstance::CreateStdBindContext(Qorv::IAFS_BindContext** o_context) noexcept {
    if (o_context == nullptr)
        return E_POINTER;
    *o_context = Qorv::Create<BindContext>().Detach();
    return *o_context != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE MainInstance::GetLocalStr(Qorv::PCStr i_id, BSTR* o_text) noexcept {
    if (o_text == nullptr)
        return E_POINTER;
    *o_text = nullptr;
    return Answer([&] {
        const auto text = m_localization.Find(i_id != nullptr ? i_id : L"");
        return text ? AnswerText(*text, o_text) : E_INVALIDARG;
    });
}

HRESULT STDMETHODCALLTYPE MainInstance::MergeLocalization(IStream* i_table) noexcept {
    if (i_table == nullptr)
        return E_POINTER;
    return Answer([&] { m_localization.Merge(ReadToEnd(i_table)); });
}

HRESULT STDMETHODCALLTYPE MainInstance::StringToID(Qorv::PCStr i_name, VARIANT_BOOL i_create, ULONG* o_id) noexcept {
    if (o_id == nullptr || i_name == nullptr)
        return E_POINTER;
    return Answer([&] {
        *o_id = m_events->EventId(i_name, i_create != VARIANT_FALSE);
        return *o_id != 0 ? S_OK : E_INVALIDARG;
    });
}

HRESULT STDMETHODCALLTYPE MainInstance::get_EventServer(Qorv::IQorv_EventServer** o_server) noexcept {
    if (o_server == nullptr)
        return E_POINTER;
    *o_server = Qorv::ComPtr<EventServer>(m_events).Detach();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE MainInstance::ExecuteOnMainThread(Qorv::IQorv_ThreadSafeCallback* i_callback,
                                                            DWORD i_wait) noexcept {
    return Answer([&] { return m_main_thread.Execute(i_callback, i_wait); });
}

HRESULT STDMETHODCALLTYPE MainInstance::get_MainFrameWnd(HWND* o_window) noexcept {
    if (o_window == nullptr)
        return E_POINTER;
    *o_window = nullptr; // A command-line host has no window.
    return S_OK;
}

void MainInstance::SaveSettings() const {
    for (const auto& [id, settings] : m_settings)
        settings.file.Save(*settings.dictionary);
}

void MainInstance::Close() {
    m_main_thread.Close();
    m_events->Close();
    m_file_systems->Close();
    m_settings.clear();
}

} // namespace DevHost
