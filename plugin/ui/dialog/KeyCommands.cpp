#include "ui/dialog/KeyCommands.h"

#include "core/trace/Check.h"

namespace Ui {
namespace {

enum class Place { everywhere, list, all_but_combo };

struct Key {
    WPARAM code;
    UINT message; ///< Alt makes it a system key.
    Place place;  ///< Elsewhere it is the item's own.
    DialogCommand command;
    bool is_with_ctrl = false;
};

constexpr Key keys[] = {
    {VK_F5, WM_KEYDOWN, Place::everywhere, DialogCommand::refresh},
    {VK_UP, WM_SYSKEYDOWN, Place::all_but_combo, DialogCommand::up},
    {VK_BACK, WM_KEYDOWN, Place::list, DialogCommand::up},
    {VK_DELETE, WM_KEYDOWN, Place::list, DialogCommand::delete_items},
    {'A', WM_KEYDOWN, Place::list, DialogCommand::select_all, true},
};

bool HasFocus(Qorv::IUIX_Item* i_item) noexcept {
    TRACE_FUNCTION();
    VARIANT_BOOL has_focus = VARIANT_FALSE;
    return i_item != nullptr && SUCCEEDED(i_item->get_HasFocus(&has_focus)) && has_focus != VARIANT_FALSE;
}

} // namespace

KeyCommands::KeyCommands(HWND i_dialog_window, Qorv::IUIX_Item* i_list, Qorv::IUIX_Item* i_combo,
                         std::function<void(DialogCommand)> i_run)
    : m_dialog_window(i_dialog_window), m_list(i_list), m_combo(i_combo), m_run(std::move(i_run)) {
    TRACE_FUNCTION();
}

KeyCommands::~KeyCommands() {
    TRACE_FUNCTION();
}

void KeyCommands::Close() noexcept {
    TRACE_FUNCTION();
    m_dialog_window = nullptr;
    m_list.Reset();
    m_combo.Reset();
    m_run = nullptr;
}

HRESULT STDMETHODCALLTYPE KeyCommands::OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(io_event != nullptr, E_INVALIDARG);
        MSG message{};
        CHECK_HRESULT(io_event->get_Message(&message.message));
        if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)
            return TRACE_RESULT(S_OK);
        CHECK_HRESULT(io_event->get_Window(&message.hwnd));
        CHECK_HRESULT(io_event->get_WParam(&message.wParam));
        if (m_dialog_window == nullptr || !IsChild(m_dialog_window, message.hwnd))
            return TRACE_RESULT(S_OK);
        for (const Key& key : keys) {
            if (message.message != key.message || message.wParam != key.code ||
                key.is_with_ctrl != (GetKeyState(VK_CONTROL) < 0) || (key.place == Place::list && !HasFocus(m_list)) ||
                (key.place == Place::all_but_combo && HasFocus(m_combo)))
                continue;
            CHECK_HRESULT(io_event->put_Handled(VARIANT_TRUE));
            const auto run = m_run; // The command may close the dialog.
            run(key.command);
            break;
        }
        return TRACE_RESULT(S_OK);
    };
}

} // namespace Ui
