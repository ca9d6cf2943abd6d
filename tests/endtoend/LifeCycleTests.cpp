// The module's whole life in one process: set up, unloaded, freed, even when a step of the set-up fails.

#include "FailingHost.h"
#include "ShippedModule.h"

#include "host/PluginHost.h"
#include "support/Outcome.h"

#include <gtest/gtest.h>

#include <bit>

namespace Tests {
namespace {

class LifeCycleTest : public testing::Test {
protected:
    LifeCycleTest() { OleInitialize(nullptr); }
    ~LifeCycleTest() override { OleUninitialize(); }

    static bool IsModuleLoaded() { return GetModuleHandleW(module_name) != nullptr; }

    TemporaryFolder m_profile;
};

TEST_F(LifeCycleTest, TwoLivesInOneProcessLeaveNothing) {
    for (int life = 1; life <= 2; ++life) {
        DevHost::PluginHost host(m_profile.Path(), ModulePath(), [](const std::wstring&) {});
        EXPECT_TRUE(IsModuleLoaded());
        Qorv::Bstr id;
        EXPECT_HRESULT(S_OK, host.FileSystem().get_Name(&id));
        EXPECT_EQ(id.View(), L"Dropbox");
        EXPECT_NO_THROW(host.Unload()) << "life " << life; // It counts the objects that are left.
        EXPECT_FALSE(IsModuleLoaded()) << "life " << life;
    }
}

TEST_F(LifeCycleTest, SetUpThatFailsAtAnyStepIsUnloaded) {
    struct Row {
        const wchar_t* failing_call;
        const char* failing_step;
    };
    for (const Row& row :
         {Row{L"AFS", "Setup"}, Row{L"AUX", "Setup"}, Row{L"UIX", "Setup"}, Row{L"RegisterFileSys", "RegisterExts"},
          Row{L"GetPluginSettings", "Init"}, Row{L"get_EventServer", "Init"}, Row{L"", ""}}) {
        SCOPED_TRACE(testing::Message() << "the host fails at " << row.failing_call);
        DevHost::ModuleLoader module;
        const auto main_instance = Qorv::Create<DevHost::MainInstance>(m_profile.Path());
        auto plugin = module.Load(ModulePath());
        Qorv::ComPtr<Qorv::IAUX_CryptKey> key;
        main_instance->GetCryptKey(plugin, VARIANT_TRUE, &key);
        auto host = Qorv::Create<FailingHost>(main_instance, row.failing_call);

        EXPECT_STREQ(row.failing_step, FailingStep(*plugin, host));

        Qorv::ILiveObjects* live_objects = nullptr;
        ASSERT_HRESULT_SUCCEEDED(
            plugin->QueryInterface(Qorv::ILiveObjects::Id, reinterpret_cast<void**>(&live_objects)));
        EXPECT_HRESULT(S_OK, plugin->Unload());
        EXPECT_HRESULT(S_OK, plugin->Unload()) << "a second one does nothing";
        main_instance->Close();
        plugin.Reset();
        EXPECT_EQ(0u, live_objects->GetCount());
        host.Reset();
        module.Free();
        EXPECT_FALSE(IsModuleLoaded());
    }
}

TEST_F(LifeCycleTest, EntryRefusesANullOutput) {
    const HMODULE module = LoadLibraryW(ModulePath().c_str());
    ASSERT_NE(module, nullptr);
    const auto get_plugin = std::bit_cast<Qorv::GetPluginFunction>(GetProcAddress(module, Qorv::GetPluginName));
    EXPECT_HRESULT(E_POINTER, get_plugin(nullptr, nullptr, nullptr));
    FreeLibrary(module);
    EXPECT_FALSE(IsModuleLoaded());
}

} // namespace
} // namespace Tests
