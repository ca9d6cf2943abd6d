// The life of a plug-in in the host: one that fails at each step, and one that leaks.

#include "host/PluginHost.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace Tests {
namespace {

using DevHost::PluginHost;

constexpr wchar_t module_name[] = L"ScriptedPlugin.qvp";

std::filesystem::path ModulePath() {
    std::array<wchar_t, 1024> path{};
    GetModuleFileNameW(nullptr, path.data(), DWORD{path.size()});
    return std::filesystem::path(path.data()).replace_filename(module_name);
}

class PluginHostTest : public testing::Test {
protected:
    PluginHostTest() { OleInitialize(nullptr); }
    ~PluginHostTest() override { OleUninitialize(); }

    std::unique_ptr<PluginHost> Load(const std::filesystem::path& i_module = ModulePath()) {
        return std::make_unique<PluginHost>(m_profile.Path(), i_module, [](const std::wstring&) {});
    }

    TemporaryFolder m_profile;
    TemporaryVariable m_calls{L"SCRIPTED_PLUGIN_CALLS", L""};
};

TEST_F(PluginHostTest, CallsTheStepsInOrderAndFreesTheModule) {
    for (int round = 1; round <= 2; ++round) {
        const TemporaryVariable calls(L"SCRIPTED_PLUGIN_CALLS", L"");
        const auto host = Load();
        EXPECT_TRUE(std::filesystem::exists(m_profile.Path() / "keys")) << "the plug-in's key is made for it";
        host->Unload();
        EXPECT_EQ(Variable(L"SCRIPTED_PLUGIN_CALLS"),
                  L"Qorce_GetPlugin;Setup;RegisterExts;FinalizeRegistering;Init;Unload;");
        EXPECT_EQ(GetModuleHandleW(module_name), nullptr);
    }
}

TEST_F(PluginHostTest, UnloadsAPluginOfWhichAStepFailed) {
    struct Row {
        const wchar_t* step;
        const wchar_t* calls;
    };
    for (const Row& row :
         {Row{L"Setup", L"Qorce_GetPlugin;Setup;Unload;"},
          Row{L"RegisterExts", L"Qorce_GetPlugin;Setup;RegisterExts;Unload;"},
          Row{L"FinalizeRegistering", L"Qorce_GetPlugin;Setup;RegisterExts;FinalizeRegistering;Unload;"},
          Row{L"Init", L"Qorce_GetPlugin;Setup;RegisterExts;FinalizeRegistering;Init;Unload;"}}) {
        const TemporaryVariable fails(L"SCRIPTED_PLUGIN_FAILS", row.step);
        const TemporaryVariable calls(L"SCRIPTED_PLUGIN_CALLS", L"");
        try {
            Load();
            ADD_FAILURE() << "no failure";
        } catch (const DevHost::Failure& failure) {
            EXPECT_EQ(failure.Code(), E_ACCESSDENIED);
            EXPECT_NE(failure.Text().find(row.step), std::wstring::npos);
        }
        EXPECT_EQ(Variable(L"SCRIPTED_PLUGIN_CALLS"), row.calls);
        EXPECT_EQ(GetModuleHandleW(module_name), nullptr) << row.step;
    }
}

TEST_F(PluginHostTest, ReportsWhatAPluginLeavesBehind) {
    {
        const TemporaryVariable leaks(L"SCRIPTED_PLUGIN_LEAKS", L"object");
        const auto host = Load();
        EXPECT_THROW(host->Unload(), DevHost::LeakFailure);
    }
    EXPECT_EQ(GetModuleHandleW(module_name), nullptr);
    const TemporaryVariable leaks(L"SCRIPTED_PLUGIN_LEAKS", L"module");
    const auto host = Load();
    EXPECT_THROW(host->Unload(), DevHost::LeakFailure);
    FreeLibrary(GetModuleHandleW(module_name));
    EXPECT_EQ(GetModuleHandleW(module_name), nullptr);
}

TEST_F(PluginHostTest, RefusesWhatIsNoPlugin) {
    const auto text = m_profile.Path() / "text.qvp";
    WriteBytes(text, "no module");
    EXPECT_THROW(Load(text), DevHost::Failure);
    EXPECT_THROW(Load(m_profile.Path() / "missing.qvp"), DevHost::Failure);
}

} // namespace
} // namespace Tests
