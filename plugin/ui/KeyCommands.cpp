#include "ui/KeyCommands.h"

#include "core/Check.h"

namespace Ui {
namespace {

struct Key {
    UINT message; ///< Alt makes it a system key.
    WPARAM code;
    bool is_for_list; ///< In an edit box it is the box's own.
    DialogCommand command;
};

constexpr Key keys[] = {
    {WM_KEYDOWN, VK_F5, false, DialogCommand::refresh},
    {WM_SYSKEYDOWN, VK_UP, false, DialogCommand::up},
    {WM_KEYDOWN, VK_BACK, true, DialogCommand::up},
    {WM_KEYDOWN, VK_DELETE, true, DialogCommand::delete_items},
};

} // namespace

KeyCommands::KeyCommands(HWND i_dialog_window, Qorv::IUIX_Item* i_list, std::function<void(DialogCommand)> i_run)
    : m_dialog_window(i_dialog_window), m_list(i_list), m_run(std::move(i_run)) {
    TRACE_FUNCTION();
}

KeyCommands::~KeyCommands() {
    TRACE_FUNCTION();
}

void KeyCommands::Close() noexcept {
    TRACE_FUNCTION();
    m_dialog_window = nullptr;
    m_list.Reset();
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
            if (message.message != key.message || message.wParam != key.code || (key.is_for_list && !IsListInUse()))
                continue;
            CHECK_HRESULT(io_event->put_Handled(VARIANT_TRUE));
            const Qorv::ComPtr<KeyCommands> self(this); // The command may close the dialog.
            m_run(key.command);
            break;
        }
        return TRACE_RESULT(S_OK);
    };
}

bool KeyCommands::IsListInUse() const noexcept {
    TRACE_FUNCTION();
    VARIANT_BOOL has_focus = VARIANT_FALSE;
    return m_list != nullptr && SUCCEEDED(m_list->get_HasFocus(&has_focus)) && has_focus != VARIANT_FALSE;
}

} // namespace Ui
