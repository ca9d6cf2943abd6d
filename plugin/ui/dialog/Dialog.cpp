#include "ui/dialog/Dialog.h"

#include "core/host/LocalizedText.h"
#include "core/host/Resource.h"
#include "core/trace/Check.h"
#include "qorv/Values.h"
#include "ui/dialog/DialogMessages.h"

namespace Qorv {
namespace {

constexpr wchar_t open_layout[] = L"OpenDialog";
constexpr wchar_t save_layout[] = L"SaveDialog";
constexpr DWORD window_style = 0x86C80000; // Popup, clipped siblings and children, caption, system menu.

Ui::DialogMode ModeOf(const Ui::DialogParameters& i_parameters) {
    TRACE_FUNCTION();
    const bool chooses_folder = (i_parameters.Flags & Ui::DialogParameters::ChooseFolder) != 0;
    return {
        .chooses_folder = chooses_folder,
        .allows_several = !chooses_folder && (i_parameters.Flags & Ui::DialogParameters::SeveralNames) != 0,
        .asks_before_replacing = (i_parameters.Flags & Ui::DialogParameters::AskBeforeReplacing) != 0,
    };
}

VARIANT_BOOL VariantBool(bool i_value) noexcept {
    TRACE_FUNCTION();
    return i_value ? VARIANT_TRUE : VARIANT_FALSE;
}

/// A disabled item would keep the focus and ignore the keys, so the focus goes to the list.
void Enable(IUIX_Item* i_item, bool i_is_enabled, IUIX_Item* i_list) {
    TRACE_FUNCTION();
    VARIANT_BOOL has_focus = VARIANT_FALSE;
    if (!i_is_enabled && SUCCEEDED(i_item->get_HasFocus(&has_focus)) && has_focus != VARIANT_FALSE)
        i_list->SetFocus();
    i_item->put_IsEnabled(VariantBool(i_is_enabled));
}

} // namespace

Dialog::Dialog(const Context& i_context, Ui::DialogParameters* io_parameters, IAFS_Name* i_default_folder)
    : m_context(i_context)
    , m_parameters(io_parameters)
    , m_default_folder(i_default_folder)
    , m_ui(i_context.ui.m_service)
    , m_mode(ModeOf(*io_parameters))
    , m_trail(i_context.file_system, *this)
    , m_command(i_context.host_instance, i_context.reaper) {
    TRACE_FUNCTION();
    CHECK_HRESULT_THROW(NamesCollection::Create(m_files_to_open));
}

Dialog::~Dialog() {
    TRACE_FUNCTION();
}

HRESULT Dialog::DoModal(bool is_open, HWND parent_window) {
    TRACE_FUNCTION();
    m_mode.is_open = is_open;
    const Resource layouts(MAKEINTRESOURCEW(IDR_LAYOUTS_XML), L"XML");
    if (parent_window == nullptr)
        m_context.host_instance->get_MainFrameWnd(&parent_window); // Without one the dialog has no owner.
    const UIX_CreateObjParameters createUiObjectParameters{
        .layout_data = layouts.GetData(),
        .layout_size = static_cast<ULONG>(layouts.GetSize()),
        .layout_id = is_open ? open_layout : save_layout,
        .owner = parent_window,
        .window_style = window_style,
        .sink = this,
    };
    CHECK_RETURN(m_ui != nullptr, E_UNEXPECTED);
    CHECK_HRESULT(m_ui->CreateObj(&createUiObjectParameters, nullptr));
    CHECK_RETURN(m_pObj != nullptr, E_FAIL);

    const ComPtr<IUIX_Obj> object(m_pObj); // `Destroy` releases the member's reference (`OnAttach`).
    LONG result = IDCANCEL;
    const HRESULT modal_result = object->DoModal(UIX_ObjModal_AppModal, &result);
    if (m_pObj != nullptr) // Null if the window was destroyed with its owner.
        CHECK_HRESULT(m_pObj->Destroy());
    CHECK_HRESULT(modal_result);
    CHECK_RETURN(result != 0 && result != IDCANCEL, ErrorCanceled);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Dialog::OnAttach(IUIX_Obj* i_object) noexcept {
    TRACE_FUNCTION();
    m_pObj = i_object;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Dialog::OnInit() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(m_pObj->get_Window(&m_window));
        m_questions = std::make_unique<Ui::DialogQuestions>(m_context.host_instance, m_window);
        CHECK_HRESULT(m_items.Find(m_pObj, m_context.host_instance, m_context.ui));
        CHECK_HRESULT(m_items.PutCaptions(m_pObj, m_context.host_instance, *m_parameters));
        CHECK_HRESULT(InitFilter());
        CHECK_HRESULT(InitWindow());
        m_watch = std::make_unique<Ui::WatchTimer>([this] { Handle([this] { CheckWorkers(); }); });
        Connect(m_default_folder != nullptr ? m_default_folder : m_parameters->InitialPathName);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT Dialog::InitFilter() {
    TRACE_FUNCTION();
    m_filter = std::make_shared<FilesExtensionFilter>(m_context.file_system, m_items.m_filter_combo);
    CHECK_HRESULT(m_filter->SetFilter(m_parameters->FileFilters.View()));
    LONG count = 0;
    CHECK_HRESULT(m_items.m_filter_combo->get_Count(&count));
    if (m_parameters->FileFilterIndex >= 0 && m_parameters->FileFilterIndex < count)
        CHECK_HRESULT(m_items.m_filter_combo->put_SelItem(m_parameters->FileFilterIndex));
    m_has_types = count > 0 && !m_mode.chooses_folder;
    CHECK_HRESULT(m_items.m_filter->put_IsVisible(VariantBool(m_has_types)));
    return TRACE_RESULT(S_OK);
}

HRESULT Dialog::InitWindow() {
    TRACE_FUNCTION();
    m_list = Create<Ui::FileList>(m_context.host_instance, m_items.m_list_rows, m_context.ui);
    CHECK_RETURN(m_list != nullptr, E_OUTOFMEMORY);
    m_list->SetFilter(m_filter, m_mode.chooses_folder);
    CHECK_HRESULT(m_list->Init());
    CHECK_HRESULT(m_items.m_list_rows->put_IsMultiSelect(VariantBool(m_mode.is_open && m_mode.allows_several)));

    // The end of a path is the folder that one is in.
    CHECK_HRESULT(m_items.m_path_label->put_IsCutInMiddle(VARIANT_TRUE));
    Bstr ok_caption;
    CHECK_HRESULT(m_items.m_ok->get_Text(&ok_caption));
    m_ok_caption = ok_caption.View();
    CHECK_HRESULT(m_items.m_settings->put_IsVisible(VariantBool(m_parameters->SettingsBtnCallbacks != nullptr)));
    if (m_parameters->InitialFileName.Length() > 0) {
        CHECK_HRESULT(m_items.m_name->put_Text(m_parameters->InitialFileName));
        m_is_name_typed = true;
    }
    CHECK_HRESULT((m_mode.is_open ? m_items.m_list : m_items.m_name)->SetFocus());
    SelectStem();

    m_keys = Create<Ui::KeyCommands>(m_window, m_items.m_list, m_items.m_filter,
                                     [this](Ui::DialogCommand i_command) { Handle([&] { RunCommand(i_command); }); });
    CHECK_RETURN(m_keys != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(m_ui->AddEventLoopMonitor(m_keys));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Dialog::OnSize() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK); // The items stay where the layout puts them.
}

HRESULT STDMETHODCALLTYPE Dialog::OnMessage(UINT i_message, WPARAM i_w_param, LPARAM) noexcept {
    TRACE_FUNCTION();
    CHECK_HRESULT(Handle([&] {
        if (i_message == Ui::folder_loaded_message) {
            m_trail.OnLoadEnded(i_w_param);
            ConfirmWhatWaits();
        } else if (i_message == Ui::task_done_message) {
            if (const auto end = m_command.TakeEnd(i_w_param))
                OnCommandEnded(*end);
        }
    }));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE Dialog::OnDestroy() noexcept {
    TRACE_FUNCTION();
    if (const auto keys = std::move(m_keys)) {
        m_ui->RemoveEventLoopMonitor(keys);
        keys->Close();
    }
    m_watch.reset();
    Disconnect();
    if (m_list != nullptr)
        m_list->Close();
    m_filter.reset(); // Frees what the combo's items carry, while they still exist.
    m_items = {};
    return TRACE_RESULT(S_OK);
}

bool Dialog::IsBusy() const noexcept {
    TRACE_FUNCTION();
    return m_command.IsRunning() || m_trail.IsLoading();
}

/// The host may have refused to deliver the end, or the message queue may have been full: the dialog must not wait for
/// ever.
void Dialog::CheckWorkers() {
    TRACE_FUNCTION();
    m_trail.CheckLoad();
    ConfirmWhatWaits();
    if (const auto end = m_command.TakeUntoldEnd())
        OnCommandEnded(*end);
}

/// Enables what can be done now, and nothing else. Cancel is always enabled.
void Dialog::UpdateItems() {
    TRACE_FUNCTION();
    if (m_pObj == nullptr)
        return;
    for (const Ui::CommandRow& row : Ui::DialogCommands())
        if (row.image != nullptr)
            m_items.m_commands->put_IsCommandEnabled(static_cast<LONG>(row.command), VariantBool(CanRun(row.command)));
    Enable(m_items.m_ok, !m_command.IsRunning(), m_items.m_list);
    Enable(m_items.m_choose_user, !IsBusy(), m_items.m_list);
    UpdateOkCaption();
}

/// The button says what it will do. Writes only a caption that has changed, so that nothing flickers.
void Dialog::UpdateOkCaption() {
    TRACE_FUNCTION();
    if (m_pObj == nullptr || m_list == nullptr)
        return;
    const std::wstring caption =
        Ui::GoesToFolder(m_mode, Content(), m_list->GetRows()) ? Text(L"db.btn.open") : m_ok_caption;
    Bstr shown;
    m_items.m_ok->get_Text(&shown);
    if (shown.View() != caption)
        m_items.m_ok->put_Text(caption.c_str());
}

std::wstring Dialog::Text(PCStr i_id, std::initializer_list<std::wstring_view> i_arguments) const {
    TRACE_FUNCTION();
    return Ui::FormatString(m_context.host_instance, i_id, i_arguments);
}

} // namespace Qorv
