#include "commands/Commands.h"

#include "JsonValue.h"
#include "Shell.h"
#include "commands/DialogOptions.h"
#include "qorv/Uix.h"
#include "services/NameText.h"

namespace DevHost {
namespace {

constexpr wchar_t filter_index_item[] = L"FileFilterIndex";
constexpr wchar_t location_item[] = L"InitialPathName";
constexpr wchar_t settings_item[] = L"SettingsBtnCallbacks";

/// Stands behind the options button, where a larger host has its settings.
class SettingsMessage final : public Qorv::CoClass<SettingsMessage, Qorv::IUIX_SettingsBtnCallbacks> {
public:
    explicit SettingsMessage(MainInstance& i_host) : m_host(&i_host) {}

    HRESULT STDMETHODCALLTYPE OnSettings(HWND i_dialog_window) noexcept override {
        if (IsWindow(i_dialog_window) == FALSE)
            return E_INVALIDARG;
        Qorv::ComPtr<IUnknown> service;
        m_host->GetExtension(L"UIX", &service);
        constexpr Qorv::PCStr buttons[] = {L"OK"};
        Qorv::UIX_MsgBoxParameters message;
        message.owner = i_dialog_window;
        message.title = L"Settings";
        message.text = L"The program that shows this dialog has its own settings here.";
        message.buttons = buttons;
        message.button_count = ULONG{std::size(buttons)};
        ULONG answer = 0;
        return service.As<Qorv::IUIX_Inst>()->ShowMsgBox(&message, &answer);
    }

private:
    Qorv::ComPtr<MainInstance> m_host;
};

CabNode::Node MakeParameters(Shell& io_shell, ULONG i_type, const DialogOptions& i_options,
                             const Operation& i_operation) {
    Qorv::ComPtr<Qorv::IAUX_CabNode> made;
    i_operation.Check(io_shell.FileSystem().CreateDlgParams(i_type, &made));
    const CabNode::Node parameters(static_cast<CabNode*>(made.Get())); // The plug-in passes on what this host makes.
    for (const auto& [id, value] : i_options.items)
        parameters->Member(id)->SetValue(value);
    const Place place = io_shell.Locations().Find(i_options.location);
    parameters->Member(location_item)->SetValue(Qorv::ComPtr<IUnknown>(place.name.Get()));
    if (i_options.has_settings) {
        const auto callbacks = Qorv::Create<SettingsMessage>(io_shell.Plugin().Host());
        parameters->Member(settings_item)->SetValue(Qorv::ComPtr<IUnknown>(callbacks.Get()));
    }
    return parameters;
}

std::vector<std::wstring> LocationsOf(Qorv::IAFS_NamesCollection& i_names, const Operation& i_operation) {
    ULONG count = 0;
    i_operation.Check(i_names.get_Count(&count));
    std::vector<std::wstring> locations;
    for (ULONG index = 0; index < count; ++index) {
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        i_operation.Check(i_names.get_Item(index, &name));
        locations.push_back(LocationOf(name));
    }
    return locations;
}

/// The file type that the user ended on, which the dialog writes back.
LONG FilterIndexOf(CabNode& i_parameters) {
    const auto item = i_parameters.Member(filter_index_item);
    const auto* const index = std::get_if<LONG>(&item->GetValue());
    if (index == nullptr)
        throw Failure(E_UNEXPECTED, L"The dialog does not tell which file type was chosen");
    return *index;
}

void Report(const Output& i_out, const std::vector<std::wstring>& i_locations, LONG i_filter_index,
            bool i_has_filters) {
    if (i_out.IsJson()) {
        i_out.Json(
            JsonValue().Begin().Texts("locations", i_locations).Integer("filter_index", i_filter_index).End().Done());
        return;
    }
    for (const std::wstring& location : i_locations)
        i_out.Line(location);
    if (i_has_filters)
        i_out.Note(L"the file type chosen is number " + std::to_wstring(i_filter_index) + L", counted from 0");
}

void ShowDialog(Shell& io_shell, ULONG i_type, const DialogOptions& i_options) {
    const Operation operation =
        io_shell.Begin(i_type == Qorv::AFS_Dlg_SaveFile ? L"Choosing where to save" : L"Choosing what to open");
    const CabNode::Node parameters = MakeParameters(io_shell, i_type, i_options, operation);
    Place folder;
    if (i_options.folder)
        folder = io_shell.Locations().Find(*i_options.folder);
    Qorv::ComPtr<Qorv::IAFS_NamesCollection> names;
    LONG choice = 0;
    operation.Check(io_shell.FileSystem().ShowDlg(i_type, parameters, folder.name, nullptr, &names, &choice),
                    i_options.folder ? L"the two folders to begin in must be in one account"
                                     : L"the plug-in refuses the dialog's parameters");
    if (names == nullptr || choice != Qorv::AFS_UserChoice_OK)
        throw Failure(E_UNEXPECTED, L"The dialog succeeded, but does not say what was chosen");
    Report(io_shell.Out(), LocationsOf(*names.Get(), operation), FilterIndexOf(*parameters.Get()),
           i_options.items.contains(L"FileFilters"));
}

} // namespace

void OpenByDialog(Shell& io_shell, const Arguments& i_arguments) {
    const DialogOptions options = DialogOptions::Parse(i_arguments);
    ShowDialog(io_shell, options.selects_folder ? Qorv::AFS_Dlg_SelectFolder : Qorv::AFS_Dlg_OpenFiles, options);
}

void SaveByDialog(Shell& io_shell, const Arguments& i_arguments) {
    const DialogOptions options = DialogOptions::Parse(i_arguments);
    if (options.selects_folder)
        throw UsageError(L"--folder is for open-dialog");
    ShowDialog(io_shell, Qorv::AFS_Dlg_SaveFile, options);
}

} // namespace DevHost
