#include "ui/dialog/KeyCommands.h"

#include "core/trace/Check.h"

namespace Ui {
namespace {

bool HasFocus(Qorv::IUIX_Item* i_item) noexcept {
    TRACE_FUNCTION();
    VARIANT_BOOL has_focus = VARIANT_FALSE;
    return i_item != nullptr && SUCCEEDED(i_item->get_HasFocus(&has_focus)) && has_focus != VARIANT_FALSE;
}

bool IsDown(int i_key) noexcept {
    TRACE_FUNCTION();
    return GetKeyState(i_key) < 0;
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

std::optional<DialogCommand> KeyCommands::CommandOf(const MSG& i_message) const noexcept {
    TRACE_FUNCTION();
    const WPARAM code = i_message.message == WM_XBUTTONUP ? HIWORD(i_message.wParam) : i_message.wParam;
    for (const CommandRow& row : DialogCommands())
        for (const CommandKey& key : row.keys)
            if (i_message.message == key.message && code == key.code && key.is_with_ctrl == IsDown(VK_CONTROL) &&
                (!key.is_with_shift || IsDown(VK_SHIFT)) && IsIn(key.place))
                return row.command;
    return std::nullopt;
}

bool KeyCommands::IsIn(KeyPlace i_place) const noexcept {
    TRACE_FUNCTION();
    switch (i_place) {
    case KeyPlace::list:
        return HasFocus(m_list);
    case KeyPlace::all_but_combo:
        return !HasFocus(m_combo);
    case KeyPlace::everywhere:
        break;
    }
    return true;
}

HRESULT STDMETHODCALLTYPE KeyCommands::OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(io_event != nullptr, E_INVALIDARG);
        MSG message{};
        CHECK_HRESULT(io_event->get_Message(&message.message));
        if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN && message.message != WM_XBUTTONUP)
            return TRACE_RESULT(S_OK);
        CHECK_HRESULT(io_event->get_Window(&message.hwnd));
        CHECK_HRESULT(io_event->get_WParam(&message.wParam));
        if (m_dialog_window == nullptr || (message.hwnd != m_dialog_window && !IsChild(m_dialog_window, message.hwnd)))
            return TRACE_RESULT(S_OK);
        const auto command = CommandOf(message);
        if (command) {
            CHECK_HRESULT(io_event->put_Handled(VARIANT_TRUE));
            const auto run = m_run; // The command may close the dialog.
            run(*command);
        }
        return TRACE_RESULT(S_OK);
    };
}

} // namespace Ui
