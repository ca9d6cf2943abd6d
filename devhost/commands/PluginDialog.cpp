#include "commands/PluginDialog.h"

#include "commands/Shell.h"
#include "qorv/Uix.h"
#include "services/NameText.h"

namespace DevHost {
namespace {

constexpr wchar_t filter_index_item[] = L"FileFilterIndex";
constexpr wchar_t location_item[] = L"InitialPathName";
constexpr wchar_t settings_item[] = L"SettingsBtnCallbacks";

/// The options button's action; a larger host would open its settings.
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

bool AskToSignInAgain(Shell& io_shell) {
    Qorv::ComPtr<IUnknown> service;
    io_shell.Plugin().Host().GetExtension(L"UIX", &service);
    constexpr Qorv::PCStr buttons[] = {L"Sign in again", L"Cancel"};
    Qorv::UIX_MsgBoxParameters message;
    message.title = L"Dropbox";
    message.text = L"Dropbox no longer accepts the saved sign-in. Do you want to sign in again?";
    message.icon = Qorv::UIX_MsgBox_IconWarning;
    message.buttons = buttons;
    message.button_count = ULONG{std::size(buttons)};
    ULONG answer = 1;
    Check(service.As<Qorv::IUIX_Inst>()->ShowMsgBox(&message, &answer), L"Cannot ask for a sign-in");
    return answer == 0;
}

/// A place that a dialog begins in. A token that is no longer accepted leads to a question.
Place FindStart(Shell& io_shell, const std::wstring& i_location) {
    try {
        return io_shell.Locations().Find(i_location);
    } catch (const SignInNeeded& failure) {
        if (!AskToSignInAgain(io_shell))
            throw Failure(Qorv::ErrorCanceled, failure.Text());
    }
    return io_shell.Locations().FindAfterSignIn(i_location);
}

CabNode::Node MakeParameters(Shell& io_shell, ULONG i_type, const DialogOptions& i_options,
                             const Operation& i_operation) {
    Qorv::ComPtr<Qorv::IAUX_CabNode> made;
    i_operation.Check(io_shell.FileSystem().CreateDlgParams(i_type, &made));
    const CabNode::Node parameters(static_cast<CabNode*>(made.Get())); // The plug-in passes on what this host makes.
    for (const auto& [id, value] : i_options.items)
        parameters->Member(id)->SetValue(value);
    const Place place = FindStart(io_shell, i_options.location);
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

/// The file type last selected, which the dialog writes back.
LONG FilterIndexOf(CabNode& i_parameters) {
    const auto item = i_parameters.Member(filter_index_item);
    const auto* const index = std::get_if<LONG>(&item->GetValue());
    if (index == nullptr)
        throw Failure(E_UNEXPECTED, L"The dialog does not say which file type was chosen");
    return *index;
}

} // namespace

DialogAnswer ShowPluginDialog(Shell& io_shell, Qorv::AFS_DlgType i_type, const DialogOptions& i_options) {
    const Operation operation =
        io_shell.Begin(i_type == Qorv::AFS_Dlg_SaveFile ? L"Choosing where to save" : L"Choosing what to open");
    const CabNode::Node parameters = MakeParameters(io_shell, i_type, i_options, operation);
    Place folder;
    if (i_options.folder)
        folder = FindStart(io_shell, *i_options.folder);
    Qorv::ComPtr<Qorv::IAFS_NamesCollection> names;
    LONG choice = 0;
    operation.Check(io_shell.FileSystem().ShowDlg(i_type, parameters, folder.name, nullptr, &names, &choice),
                    i_options.folder ? L"the two folders to begin in must be in one account"
                                     : L"the plug-in refuses the dialog's parameters");
    if (names == nullptr || choice != Qorv::AFS_UserChoice_OK)
        throw Failure(E_UNEXPECTED, L"The dialog succeeded, but does not say what was chosen");
    const DialogAnswer answer{LocationsOf(*names.Get(), operation), FilterIndexOf(*parameters.Get())};
    Qorv::ComPtr<Qorv::IAFS_Name> first;
    operation.Check(names->get_Item(0, &first));
    io_shell.Locations().SaveAccountOf(first);
    return answer;
}

} // namespace DevHost
