#include "commands/Commands.h"

#include "base/Unicode.h"
#include "commands/JsonValue.h"
#include "commands/Shell.h"
#include "qorv/Uix.h"
#include "qorv/Values.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace DevHost {
namespace {

using Row = std::vector<std::wstring>;

template <typename Object>
std::wstring TextOf(Object& i_object, HRESULT (STDMETHODCALLTYPE Object::*i_getter)(BSTR*)) {
    Qorv::Bstr text;
    Check((i_object.*i_getter)(&text), L"The plug-in does not say what it is");
    return OneLine(text.View());
}

template <typename Object>
ULONG NumberOf(Object& i_object, HRESULT (STDMETHODCALLTYPE Object::*i_getter)(ULONG*)) {
    ULONG number = 0;
    Check((i_object.*i_getter)(&number), L"The plug-in does not say what it is");
    return number;
}

std::wstring Hexadecimal(ULONG i_number) {
    std::array<wchar_t, 16> text{};
    std::swprintf(text.data(), text.size(), L"0x%08lX", i_number);
    return text.data();
}

std::wstring IdOf(Qorv::IQorv_Plugin& i_plugin) {
    GUID guid{};
    Check(i_plugin.get__GUID(&guid), L"The plug-in does not say what it is");
    std::array<wchar_t, 40> text{};
    StringFromGUID2(guid, text.data(), int{text.size()});
    return text.data();
}

/// The sizes of the file system's icon, such as "16x16, 32x32".
std::wstring IconSizes(Qorv::IAFS_FileSys& i_file_system) {
    Qorv::ComPtr<IUnknown> object;
    if (FAILED(i_file_system.get_Icon(&object)) || object == nullptr)
        return L"none";
    const auto image = object.As<Qorv::IUIX_Image>();
    ULONG count = 0;
    if (image == nullptr || FAILED(image->get_Count(&count)))
        return L"none";
    std::wstring sizes;
    for (ULONG index = 0; index < count; ++index) {
        Qorv::ComPtr<Qorv::IUIX_Bitmap> bitmap;
        Check(image->get_Bitmap(index, &bitmap), L"The icon cannot be read");
        sizes += (sizes.empty() ? L"" : L", ") + std::to_wstring(NumberOf(*bitmap, &Qorv::IUIX_Bitmap::get_Width)) +
                 L"x" + std::to_wstring(NumberOf(*bitmap, &Qorv::IUIX_Bitmap::get_Height));
    }
    return sizes;
}

std::vector<Row> Describe(PluginHost& i_plugin_host) {
    Qorv::IQorv_Plugin& plugin = i_plugin_host.Plugin();
    Qorv::IAFS_FileSys& file_system = i_plugin_host.FileSystem();
    const ULONG version = NumberOf(plugin, &Qorv::IQorv_Plugin::get_version);
    return {
        {L"name", TextOf(plugin, &Qorv::IQorv_Plugin::get_Name)},
        {L"id", IdOf(plugin)},
        {L"version", std::to_wstring(version >> 16) + L"." + std::to_wstring(version & 0xFFFF)},
        {L"description", TextOf(plugin, &Qorv::IQorv_Plugin::get_Description)},
        {L"publisher", TextOf(plugin, &Qorv::IQorv_Plugin::get_Publisher)},
        {L"copyright", TextOf(plugin, &Qorv::IQorv_Plugin::get_CopyrightInfo)},
        {L"file system", TextOf(file_system, &Qorv::IAFS_FileSys::get_Name)},
        {L"display name", TextOf(file_system, &Qorv::IAFS_FileSys::get_DispName)},
        {L"features", Hexadecimal(NumberOf(file_system, &Qorv::IAFS_FileSys::get_Features))},
        {L"icon", IconSizes(file_system)},
    };
}

} // namespace

void ShowInfo(Shell& io_shell, const CommandLine&) {
    const std::vector<Row> rows = Describe(io_shell.Plugin());
    io_shell.Unload();
    if (io_shell.Out().IsJson()) {
        JsonValue json;
        json.Begin();
        for (const Row& row : rows) {
            std::string name = ToUtf8(row[0]);
            std::replace(name.begin(), name.end(), ' ', '_');
            json.Text(name, row[1]);
        }
        io_shell.Out().Json(json.End().Done());
        return;
    }
    io_shell.Out().Table(rows);
    io_shell.Out().Line(L"Set up and unloaded: no object is left, the module is out of the process.");
}

} // namespace DevHost
