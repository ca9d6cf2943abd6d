#include "uix/CommandBar.h"

#include "uix/ControlName.h"
#include "uix/GdiBitmap.h"

#include <commctrl.h>
#include <oleacc.h>

#include <algorithm>

namespace DevHost {
namespace {

// Layout units.
constexpr int button_side = 24;
constexpr int picture_side = 16;
constexpr int separator_width = 8;

constexpr UINT_PTR subclass_id = 1;
constexpr BYTE disabled_opacity = 90;

int ButtonSide() {
    return Scale::OfScreen().Pixels(button_side);
}

int SeparatorWidth() {
    return Scale::OfScreen().Pixels(separator_width);
}

} // namespace

CommandBar::CommandBar(std::span<const Qorv::UIX_Command> i_commands) {
    const auto side = static_cast<ULONG>(Scale::OfScreen().Pixels(picture_side));
    for (const Qorv::UIX_Command& command : i_commands) {
        const auto picture = command.image != nullptr ? SquareOf(command.image, side) : nullptr;
        if (command.id < 0 || (command.id > 0 && picture == nullptr))
            throw Failure(E_INVALIDARG, L"A command of a command bar has a wrong id or no picture");
        m_commands.push_back({command.id, command.text != nullptr ? command.text : L"", picture,
                              command.is_enabled != VARIANT_FALSE, nullptr});
    }
}

/// The buttons still exist if not all could be created.
CommandBar::~CommandBar() {
    if (Window() != nullptr)
        for (const Command& command : m_commands)
            RemoveWindowSubclass(command.button, &ButtonProcedure, subclass_id);
}

SIZE CommandBar::Size() const noexcept {
    SIZE size{0, ButtonSide()};
    for (const Command& command : m_commands)
        size.cx += command.id != 0 ? ButtonSide() : SeparatorWidth();
    return size;
}

void CommandBar::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    CreateControl(i_description, i_place, {L"STATIC", WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, ROLE_SYSTEM_TOOLBAR});
    m_tool_tips = ToolTips(i_place.parent);
    int left = 0;
    for (Command& command : m_commands) {
        if (command.id != 0)
            MakeButton(command, {left, 0, left + ButtonSide(), ButtonSide()});
        left += command.id != 0 ? ButtonSide() : SeparatorWidth();
    }
    KeepTabStop(nullptr);
}

void CommandBar::MakeButton(Command& io_command, const RECT& i_place) const {
    io_command.button = CreateWindowW(
        L"BUTTON", io_command.text.c_str(), WS_CHILD | WS_VISIBLE | BS_OWNERDRAW, static_cast<int>(i_place.left),
        static_cast<int>(i_place.top), static_cast<int>(i_place.right - i_place.left),
        static_cast<int>(i_place.bottom - i_place.top), Window(), nullptr, GetModuleHandleW(nullptr), nullptr);
    if (io_command.button == nullptr)
        throw LastErrorFailure(L"Cannot make a control");
    SetWindowSubclass(io_command.button, &ButtonProcedure, subclass_id, reinterpret_cast<DWORD_PTR>(this));
    EnableWindow(io_command.button, io_command.is_enabled_at_first);
    m_tool_tips.SetText(io_command.button, io_command.text);
}

const CommandBar::Command* CommandBar::CommandOf(HWND i_button) const noexcept {
    const auto found = std::ranges::find(m_commands, i_button, &Command::button);
    return found != m_commands.end() ? &*found : nullptr;
}

LRESULT CommandBar::OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    if (i_message == WM_COMMAND && HIWORD(i_wparam) == BN_CLICKED) {
        if (const Command* const command = CommandOf(reinterpret_cast<HWND>(i_lparam)))
            Post(Qorv::UIX_ItemEvent_Command, command->id);
        return 0;
    }
    if (i_message == WM_DRAWITEM) {
        DrawButton(*reinterpret_cast<const DRAWITEMSTRUCT*>(i_lparam));
        return TRUE;
    }
    return DialogItem::OnControlMessage(i_message, i_wparam, i_lparam);
}

/// Nothing here calls the dialog's sink directly, and only the sink could release the bar.
LRESULT CALLBACK CommandBar::ButtonProcedure(HWND i_button, UINT i_message, WPARAM i_wparam, LPARAM i_lparam,
                                             UINT_PTR /*i_subclass_id*/, DWORD_PTR i_bar) {
    auto* const bar = reinterpret_cast<CommandBar*>(i_bar);
    switch (i_message) {
    case WM_GETDLGCODE: {
        const auto* const message = reinterpret_cast<const MSG*>(i_lparam);
        const bool is_enter = message != nullptr && message->message == WM_KEYDOWN && message->wParam == VK_RETURN;
        return DLGC_BUTTON | DLGC_WANTARROWS | (is_enter ? DLGC_WANTMESSAGE : 0);
    }
    case WM_KEYDOWN:
        if (bar->OnKey(i_button, i_wparam))
            return 0;
        break;
    case WM_SETFOCUS:
        bar->KeepTabStop(i_button);
        bar->TellFocus(i_button);
        break;
    case WM_MOUSEMOVE:
        bar->OnMouse(i_button);
        break;
    case WM_MOUSELEAVE:
        bar->m_hot_button = nullptr;
        InvalidateRect(i_button, nullptr, FALSE);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(i_button, &ButtonProcedure, subclass_id);
        break;
    default:
        break;
    }
    return DefSubclassProc(i_button, i_message, i_wparam, i_lparam);
}

void CommandBar::OnMouse(HWND i_button) {
    if (m_hot_button == i_button)
        return;
    m_hot_button = i_button;
    InvalidateRect(i_button, nullptr, FALSE);
    TRACKMOUSEEVENT request{sizeof(request), TME_LEAVE, i_button, 0};
    TrackMouseEvent(&request);
}

bool CommandBar::OnKey(HWND i_button, WPARAM i_key) {
    switch (i_key) {
    case VK_LEFT:
    case VK_UP:
        GoFrom(i_button, -1);
        return true;
    case VK_RIGHT:
    case VK_DOWN:
        GoFrom(i_button, 1);
        return true;
    case VK_RETURN:
        SendMessageW(i_button, BM_CLICK, 0, 0);
        return true;
    default:
        return false;
    }
}

/// Moves to the next enabled button, wrapping around.
void CommandBar::GoFrom(HWND i_button, int i_step) const {
    const auto count = static_cast<std::ptrdiff_t>(m_commands.size());
    auto index = CommandOf(i_button) - m_commands.data();
    for (std::ptrdiff_t tries = 0; tries < count; ++tries) {
        index = (index + i_step + count) % count;
        const HWND button = m_commands[static_cast<std::size_t>(index)].button;
        if (button != nullptr && IsWindowEnabled(button)) {
            ::SetFocus(button);
            return;
        }
    }
}

/// Tab stops at one button of the row: the one that had the focus last, as long as it is enabled.
void CommandBar::KeepTabStop(HWND i_wanted) const {
    HWND tab_stop = i_wanted;
    for (const Command& command : m_commands)
        if (tab_stop == nullptr && command.button != nullptr && IsWindowEnabled(command.button))
            tab_stop = command.button;
    for (const Command& command : m_commands) {
        if (command.button == nullptr)
            continue;
        const LONG_PTR style = GetWindowLongPtrW(command.button, GWL_STYLE) & ~LONG_PTR{WS_TABSTOP};
        SetWindowLongPtrW(command.button, GWL_STYLE, command.button == tab_stop ? style | WS_TABSTOP : style);
    }
}

void CommandBar::DrawButton(const DRAWITEMSTRUCT& i_request) const {
    const Command* const command = CommandOf(i_request.hwndItem);
    if (command == nullptr)
        return;
    RECT place = i_request.rcItem;
    FillRect(i_request.hDC, &place, GetSysColorBrush(COLOR_3DFACE));
    const bool is_pressed = (i_request.itemState & ODS_SELECTED) != 0;
    const bool has_focus = (i_request.itemState & ODS_FOCUS) != 0;
    const bool is_enabled = (i_request.itemState & ODS_DISABLED) == 0;
    if (is_pressed || (is_enabled && (has_focus || i_request.hwndItem == m_hot_button)))
        DrawEdge(i_request.hDC, &place, is_pressed ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT);
    const LONG shift = is_pressed ? 1 : 0;
    const auto side = static_cast<LONG>(command->picture->Width());
    DrawBitmap(i_request.hDC, *command->picture,
               {(place.left + place.right - side) / 2 + shift, (place.top + place.bottom - side) / 2 + shift},
               is_enabled ? BYTE{255} : disabled_opacity);
    if (has_focus) {
        InflateRect(&place, -2, -2);
        DrawFocusRect(i_request.hDC, &place);
    }
}

HRESULT STDMETHODCALLTYPE CommandBar::put_IsCommandEnabled(LONG i_command_id, VARIANT_BOOL i_is_enabled) noexcept {
    return WithControl([&] {
        const auto found = std::ranges::find(m_commands, i_command_id, &Command::id);
        if (i_command_id == 0 || found == m_commands.end())
            return E_INVALIDARG;
        // The focus must not stay on a disabled button.
        if (i_is_enabled == VARIANT_FALSE && GetFocus() == found->button)
            SendMessageW(GetParent(Window()), WM_NEXTDLGCTL, FALSE, FALSE);
        EnableWindow(found->button, i_is_enabled != VARIANT_FALSE);
        KeepTabStop(nullptr);
        return S_OK;
    });
}

} // namespace DevHost
