// The file that ships: what Windows and its Properties page read from it before any of its code runs.

#include "ShippedModule.h"

#include "base/Unicode.h"
#include "qorv/Host.h"

#include <gtest/gtest.h>

#include <bit>
#include <vector>

namespace Tests {
namespace {

class ShippedFileTest : public testing::Test {
protected:
    ~ShippedFileTest() override { FreeLibrary(m_module); }

    const IMAGE_NT_HEADERS& Headers() const { return *At<IMAGE_NT_HEADERS>(DWORD(At<IMAGE_DOS_HEADER>(0)->e_lfanew)); }

    template <typename Part>
    const Part* At(DWORD i_offset) const {
        return reinterpret_cast<const Part*>(reinterpret_cast<const BYTE*>(m_module) + i_offset);
    }
    template <typename Part>
    const Part* Directory(int i_number) const {
        return At<Part>(Headers().OptionalHeader.DataDirectory[i_number].VirtualAddress);
    }

    const HMODULE m_module = LoadLibraryW(ModulePath().c_str());
};

TEST_F(ShippedFileTest, ExportsOneFunctionAndImportsOnlyWhatWindowsHas) {
    const auto& exports = *Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    EXPECT_EQ(exports.NumberOfFunctions, 1u);
    ASSERT_EQ(exports.NumberOfNames, 1u);
    EXPECT_STREQ(At<char>(*At<DWORD>(exports.AddressOfNames)), Qorv::GetPluginName);

    wchar_t system[MAX_PATH] = {};
    ASSERT_NE(GetSystemDirectoryW(system, MAX_PATH), 0u);
    const auto* imported = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    ASSERT_NE(imported->Name, 0u);
    for (; imported->Name != 0; ++imported) {
        const char* const name = At<char>(imported->Name);
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(system) / name)) << name;
    }
}

TEST_F(ShippedFileTest, IsHardenedAndTellsNoBuildTime) {
    constexpr int hardened = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT |
                             IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA;
    EXPECT_EQ(Headers().OptionalHeader.DllCharacteristics & hardened, hardened);
    EXPECT_EQ(Headers().OptionalHeader.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
    EXPECT_EQ(Headers().FileHeader.TimeDateStamp, 0u);
    EXPECT_EQ(Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT)->TimeDateStamp, 0u);
}

TEST_F(ShippedFileTest, HasTheVersionThatThePluginTells) {
    const std::filesystem::path file = ModulePath();
    DWORD unused = 0;
    std::vector<BYTE> information(GetFileVersionInfoSizeW(file.c_str(), &unused));
    ASSERT_TRUE(GetFileVersionInfoW(file.c_str(), 0, DWORD(information.size()), information.data()));
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueW(information.data(), L"\\", reinterpret_cast<void**>(&fixed), &size));

    const auto get_plugin = std::bit_cast<Qorv::GetPluginFunction>(GetProcAddress(m_module, Qorv::GetPluginName));
    Qorv::ComPtr<Qorv::IQorv_Plugin> plugin;
    ASSERT_EQ(get_plugin(nullptr, nullptr, &plugin), S_OK);
    ULONG version = 0;
    plugin->get_version(&version);
    EXPECT_EQ(fixed->dwFileVersionMS, version);
    EXPECT_EQ(fixed->dwProductVersionMS, version);
    EXPECT_EQ(fixed->dwFileType, DWORD{VFT_DLL});

    const std::wstring text = std::to_wstring(HIWORD(version)) + L"." + std::to_wstring(LOWORD(version));
    const std::pair<const wchar_t*, std::wstring> strings[] = {
        {L"FileVersion", text},
        {L"ProductVersion", text},
        {L"InternalName", L"Dropbox"},
        {L"OriginalFilename", module_name},
        {L"FileDescription", L"Dropbox connector"},
    };
    for (const auto& [name, value] : strings) {
        wchar_t* found = nullptr;
        const std::wstring place = L"\\StringFileInfo\\040904B0\\" + std::wstring(name);
        ASSERT_TRUE(VerQueryValueW(information.data(), place.c_str(), reinterpret_cast<void**>(&found), &size))
            << DevHost::ToUtf8(place);
        EXPECT_STREQ(found, value.c_str());
    }
}

} // namespace
} // namespace Tests
