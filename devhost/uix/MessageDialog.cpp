#include "uix/MessageDialog.h"

#include "base/Failure.h"

namespace DevHost {
namespace {

constexpr WORD text_id = 99;
constexpr WORD first_button_id = 100;

HICON LoadSystemIcon(PCWSTR i_name, const RECT& i_place) {
    if (i_name == nullptr)
        return nullptr;
    return static_cast<HICON>(LoadImageW(nullptr, i_name, IMAGE_ICON, static_cast<int>(i_place.right - i_place.left),
                                         static_cast<int>(i_place.bottom - i_place.top), LR_SHARED));
}

} // namespace

MessageDialog::MessageDialog(HWND i_owner, const MessageContent& i_content)
    : MessageDialog(i_owner, i_content, MessageLayout(i_content, Scale::OfScreen())) {}

MessageDialog::MessageDialog(HWND i_owner, const MessageContent& i_content, MessageLayout i_layout)
    : DialogWindow(i_owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, WS_EX_DLGMODALFRAME, i_content.title,
                   i_layout.client)
    , m_layout(std::move(i_layout))
    , m_icon(LoadSystemIcon(i_content.icon, m_layout.icon)) {
    AddControl(L"STATIC", m_layout.shown_text, SS_LEFT | SS_NOPREFIX, m_layout.text, text_id);
    for (std::size_t index = 0; index < i_content.buttons.size(); ++index)
        AddControl(L"BUTTON", i_content.buttons[index],
                   WS_TABSTOP | (index == i_content.default_button ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON),
                   m_layout.buttons[index], static_cast<WORD>(first_button_id + index));
    m_default_button_id = static_cast<WORD>(first_button_id + i_content.default_button);
    SendMessageW(Window(), DM_SETDEFID, m_default_button_id, 0);
}

HWND MessageDialog::AddControl(PCWSTR i_class, const std::wstring& i_text, DWORD i_style, const RECT& i_place,
                               WORD i_id) {
    const HWND control =
        CreateWindowExW(0, i_class, i_text.c_str(), i_style | WS_CHILD | WS_VISIBLE, static_cast<int>(i_place.left),
                        static_cast<int>(i_place.top), static_cast<int>(i_place.right - i_place.left),
                        static_cast<int>(i_place.bottom - i_place.top), Window(),
                        reinterpret_cast<HMENU>(UINT_PTR{i_id}), GetModuleHandleW(nullptr), nullptr);
    if (control == nullptr)
        throw LastErrorFailure(L"Cannot make a control");
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(m_layout.font.get()), FALSE);
    return control;
}

ULONG MessageDialog::Ask(LoopMonitors& io_monitors) {
    LONG answer = static_cast<LONG>(m_layout.buttons.size()) - 1;
    Check(RunModal(io_monitors, answer), L"Cannot show a message");
    return static_cast<ULONG>(answer);
}

HRESULT MessageDialog::OnInit() {
    SendMessageW(Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(Window(), m_default_button_id)), TRUE);
    MessageBeep(m_icon != nullptr ? MB_ICONWARNING : MB_OK);
    return S_OK;
}

void MessageDialog::OnCommand(WORD i_control_id, WORD i_notification) {
    if (i_control_id >= first_button_id && i_notification == BN_CLICKED)
        EndModal(LONG{i_control_id} - first_button_id);
}

std::optional<LRESULT> MessageDialog::OnMessage(UINT i_message, WPARAM i_wparam, LPARAM /*i_lparam*/) {
    switch (i_message) {
    case WM_ERASEBKGND:
        Paint(reinterpret_cast<HDC>(i_wparam));
        return TRUE;
    case WM_CTLCOLORSTATIC:
        SetBkColor(reinterpret_cast<HDC>(i_wparam), GetSysColor(COLOR_WINDOW));
        SetTextColor(reinterpret_cast<HDC>(i_wparam), GetSysColor(COLOR_WINDOWTEXT));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    default:
        return std::nullopt;
    }
}

void MessageDialog::Paint(HDC i_device) const {
    RECT area;
    GetClientRect(Window(), &area);
    area.bottom = m_layout.button_area_top;
    FillRect(i_device, &area, GetSysColorBrush(COLOR_WINDOW));
    area.top = area.bottom;
    area.bottom = m_layout.client.cy;
    FillRect(i_device, &area, GetSysColorBrush(COLOR_3DFACE));
    if (m_icon != nullptr)
        DrawIconEx(i_device, static_cast<int>(m_layout.icon.left), static_cast<int>(m_layout.icon.top), m_icon,
                   static_cast<int>(m_layout.icon.right - m_layout.icon.left),
                   static_cast<int>(m_layout.icon.bottom - m_layout.icon.top), 0, nullptr, DI_NORMAL);
}

} // namespace DevHost
