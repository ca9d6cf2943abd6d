#include "LoadedModule.h"

#include "Measure.h"
#include "services/CabNode.h"
#include "support/DevService.h"

namespace Bench {
namespace {

using DevHost::Check;
using Qorv::ComPtr;

} // namespace

LoadedModule::LoadedModule()
    : m_instance(Qorv::Create<DevHost::MainInstance>(m_profile.Path()))
    , m_host(Qorv::Create<MeasuredHost>(m_instance)) {
    m_load_time = milliseconds * Measure([&] { SetUp(); }).wall;
    m_file_system = m_instance->FileSystems().Find(L"Dropbox");
    ComPtr<Qorv::IAUX_CryptKey> key; // The plug-in only asks for a key that exists, and not before it binds.
    Check(m_host->GetCryptKey(m_plugin, VARIANT_TRUE, &key), L"GetCryptKey");
}

void LoadedModule::SetUp() {
    m_library_time = milliseconds * Measure([&] { m_plugin = m_module.Load(L"Z:" MODULE_PATH); }).wall;
    Check(m_plugin->Setup(m_host), L"Setup");
    Check(m_plugin->RegisterExts(), L"RegisterExts");
    Check(m_plugin->FinalizeRegistering(), L"FinalizeRegistering");
    Check(m_plugin->Init(), L"Init");
}

double LoadedModule::DecodingTime() const noexcept {
    return milliseconds * m_host->Ui().DecodingSeconds();
}

LoadedModule::~LoadedModule() {
    m_root.Reset();
    m_file_system.Reset();
    Unload();
    m_instance->Close();
    m_plugin.Reset();
    m_host.Reset();
}

void LoadedModule::Unload() {
    if (!std::exchange(m_is_unloaded, true))
        m_plugin->Unload();
}

void LoadedModule::BindAccount() {
    const auto dictionary = Qorv::Create<DevHost::CabNode>();
    dictionary->Member(L"Token")->SetValue(Tests::Service::Token());
    ComPtr<Qorv::IAFS_AccountData> account;
    Check(m_file_system->CreateAccount(dictionary, nullptr, nullptr, &account), L"CreateAccount");
    Check(m_file_system->BindToObject(account, nullptr, 0, nullptr, nullptr, &m_root), L"BindToObject");
}

ComPtr<Qorv::IAFS_Name> LoadedModule::NameOf(const std::wstring& i_path) const {
    ComPtr<Qorv::IAFS_Name> name;
    Check(m_file_system->StringToName(i_path.c_str(), 0, m_root, &name), i_path);
    return name;
}

ComPtr<Qorv::IAFS_File> LoadedModule::Open(const std::wstring& i_path, ULONG i_flags) const {
    ComPtr<Qorv::IAFS_File> file;
    Check(m_file_system->OpenFile(NameOf(i_path), i_flags, nullptr, nullptr, &file), i_path);
    return file;
}

} // namespace Bench
