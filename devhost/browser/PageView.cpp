#include "browser/PageView.h"

#include "base/Failure.h"
#include "browser/FormSubmission.h"
#include "browser/Url.h"
#include "uix/ControlName.h"
#include "uix/WindowText.h"

#include <algorithm>

namespace DevHost {
namespace {

using Kind = PageBlock::Kind;

constexpr wchar_t class_name[] = L"QorvHostPage";
constexpr WORD first_control_id = 100;
constexpr COLORREF link_color = RGB(0, 84, 180);

struct ControlLook {
    PCWSTR window_class;
    DWORD style;
    DWORD extended_style;
};

ControlLook LookOf(Kind i_kind) {
    switch (i_kind) {
    case Kind::Field:
        return {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
    case Kind::Password:
        return {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL | ES_PASSWORD, WS_EX_CLIENTEDGE};
    case Kind::Button:
        return {L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON | BS_NOTIFY, 0};
    case Kind::Link:
        return {L"BUTTON", WS_TABSTOP | BS_OWNERDRAW | BS_NOTIFY, 0};
    default:
        return {L"STATIC", SS_LEFT | SS_NOPREFIX, 0};
    }
}

/// Escapes "&" so that a caption shows it as written.
std::wstring Caption(const PageBlock& i_block) {
    if (i_block.kind != Kind::Button)
        return i_block.text;
    std::wstring caption;
    for (const wchar_t character : i_block.text)
        caption += character == L'&' ? std::wstring(L"&&") : std::wstring(1, character);
    return caption;
}

HWND CreateControl(const PageBlock& i_block, HWND i_parent, WORD i_id, HFONT i_font) {
    const ControlLook look = LookOf(i_block.kind);
    const HWND control = CreateWindowExW(look.extended_style, look.window_class, Caption(i_block).c_str(),
                                         look.style | WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, i_parent,
                                         reinterpret_cast<HMENU>(UINT_PTR{i_id}), GetModuleHandleW(nullptr), nullptr);
    if (control == nullptr)
        throw LastErrorFailure(L"Cannot show the page");
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(i_font), FALSE);
    if (!i_block.name.empty())
        SetControlName(control, i_block.name);
    return control;
}

} // namespace

PageView::PageView(HWND i_parent, const RECT& i_place, Listener i_listener)
    : m_listener(std::move(i_listener)), m_scroller(nullptr), m_layout(Scale::OfScreen()) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = WindowProcedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
    window_class.lpszClassName = class_name;
    RegisterClassW(&window_class); // Fails if an earlier view has registered the class, which is fine.
    m_window = CreateWindowExW(
        WS_EX_CONTROLPARENT, class_name, L"", WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
        static_cast<int>(i_place.left), static_cast<int>(i_place.top), static_cast<int>(i_place.right - i_place.left),
        static_cast<int>(i_place.bottom - i_place.top), i_parent, nullptr, window_class.hInstance, nullptr);
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make the browser's window");
    m_scroller = Scroller(m_window);
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

PageView::~PageView() {
    if (m_window == nullptr)
        return;
    SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
    DestroyWindow(m_window);
}

void PageView::Show(Page i_page, const std::wstring& i_url) {
    Clear();
    m_page = std::move(i_page);
    m_url = i_url;
    m_is_busy = false;
    for (const PageBlock& block : m_page.blocks) {
        const auto id = static_cast<WORD>(first_control_id + m_controls.size());
        m_controls.push_back(
            block.kind != Kind::Hidden ? CreateControl(block, m_window, id, m_layout.FontOf(block.kind)) : nullptr);
    }
    Arrange();
    InvalidateRect(m_window, nullptr, TRUE);
    FocusFirstField();
    SetWindowTextW(m_window, m_url.c_str());
}

void PageView::Clear() noexcept {
    const HWND focus = GetFocus();
    if (focus != nullptr && IsChild(m_window, focus))
        SetFocus(m_window); // Destroying the focused window would leave nothing with the focus.
    for (const HWND control : std::exchange(m_controls, {}))
        if (control != nullptr)
            DestroyWindow(control);
    m_scroller.Reset();
}

void PageView::SetBusy(bool i_is_busy) {
    m_is_busy = i_is_busy;
    SetWindowTextW(m_window, i_is_busy ? L"" : m_url.c_str());
    for (std::size_t block = 0; block < m_controls.size(); ++block)
        if (m_page.blocks[block].kind == Kind::Button)
            EnableWindow(Control(block), !i_is_busy);
}

void PageView::Arrange() {
    RECT client;
    GetClientRect(m_window, &client);
    PageLayout::Places places = m_layout.Arrange(m_page, static_cast<int>(client.right));
    m_scroller.SetContent(places.size);
    GetClientRect(m_window, &client); // A scroll bar may have appeared.
    places = m_layout.Arrange(m_page, static_cast<int>(client.right));
    m_scroller.SetContent(places.size);
    const POINT offset = m_scroller.Offset();
    for (std::size_t block = 0; block < m_controls.size(); ++block) {
        const RECT& place = places.blocks[block];
        if (Control(block) != nullptr)
            MoveWindow(Control(block), static_cast<int>(place.left), static_cast<int>(place.top - offset.y),
                       static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top), TRUE);
    }
}

/// The first empty field, but only in the active window, so as not to steal the focus.
void PageView::FocusFirstField() const {
    if (GetActiveWindow() != GetAncestor(m_window, GA_ROOT))
        return;
    HWND first = nullptr;
    for (std::size_t block = 0; block < m_controls.size(); ++block) {
        const PageBlock& description = m_page.blocks[block];
        const bool is_field = description.kind == Kind::Field || description.kind == Kind::Password;
        if (is_field && description.text.empty())
            return void(SetFocus(Control(block)));
        if (first == nullptr && (is_field || description.kind == Kind::Button))
            first = Control(block);
    }
    SetFocus(first != nullptr ? first : m_window);
}

std::optional<std::size_t> PageView::FocusedBlock() const {
    const HWND focus = GetFocus();
    const auto found = std::ranges::find(m_controls, focus);
    if (focus == nullptr || found == m_controls.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_controls.begin());
}

void PageView::Activate(std::size_t i_block) {
    const PageBlock& block = m_page.blocks[i_block];
    if (m_is_busy)
        return;
    if (block.kind == Kind::Link)
        m_listener.on_request({Url(m_url).Resolve(block.url).Text(), {}, false});
    else if (block.kind == Kind::Button)
        m_listener.on_request(
            SubmitForm(m_page, m_url, i_block, [this](std::size_t i_field) { return WindowText(Control(i_field)); }));
}

void PageView::PressDefaultButton(std::size_t i_field) {
    const std::size_t form = m_page.blocks[i_field].form;
    const auto button = std::ranges::find_if(m_page.blocks, [form](const PageBlock& i_block) {
        return i_block.kind == Kind::Button && i_block.form == form;
    });
    if (button != m_page.blocks.end())
        Activate(static_cast<std::size_t>(button - m_page.blocks.begin()));
}

bool PageView::TranslateKey(const MSG& i_message) {
    if (i_message.message != WM_KEYDOWN || (i_message.hwnd != m_window && !IsChild(m_window, i_message.hwnd)))
        return false;
    const std::optional<std::size_t> focused = FocusedBlock();
    const bool is_in_field =
        focused && (m_page.blocks[*focused].kind == Kind::Field || m_page.blocks[*focused].kind == Kind::Password);
    const bool is_control_down = GetKeyState(VK_CONTROL) < 0;
    switch (i_message.wParam) {
    case VK_TAB: {
        const HWND next = GetNextDlgTabItem(m_window, focused ? Control(*focused) : nullptr, GetKeyState(VK_SHIFT) < 0);
        if (next != nullptr)
            SetFocus(next);
        return true;
    }
    case VK_RETURN:
        if (is_in_field)
            PressDefaultButton(*focused);
        else if (focused)
            Activate(*focused);
        return true;
    case 'A':
        if (!is_in_field || !is_control_down)
            return false;
        SendMessageW(Control(*focused), EM_SETSEL, 0, -1);
        return true;
    case VK_PRIOR:
    case VK_NEXT:
        SendMessageW(m_window, WM_VSCROLL, i_message.wParam == VK_PRIOR ? SB_PAGEUP : SB_PAGEDOWN, 0);
        return true;
    case VK_UP:
    case VK_DOWN:
        if (is_in_field)
            return false;
        SendMessageW(m_window, WM_VSCROLL, i_message.wParam == VK_UP ? SB_LINEUP : SB_LINEDOWN, 0);
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK PageView::WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    auto* const view = reinterpret_cast<PageView*>(GetWindowLongPtrW(i_window, GWLP_USERDATA));
    if (view == nullptr)
        return DefWindowProcW(i_window, i_message, i_wparam, i_lparam);
    return view->Process(i_message, i_wparam, i_lparam);
}

/// Don't touch the object after notifying the listener, which may have released it.
LRESULT PageView::Process(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    if (m_scroller.Handle(i_message, i_wparam))
        return 0;
    if (i_message >= WM_APP) {
        const auto on_message = m_listener.on_message; // It may destroy the view, and itself with it.
        on_message(i_message);
        return 0;
    }
    switch (i_message) {
    case WM_COMMAND:
        OnCommand(LOWORD(i_wparam), HIWORD(i_wparam));
        return 0;
    case WM_SIZE:
        Arrange();
        return 0;
    case WM_DRAWITEM:
        DrawLink(*reinterpret_cast<const DRAWITEMSTRUCT*>(i_lparam));
        return TRUE;
    case WM_CTLCOLORSTATIC:
        SetBkColor(reinterpret_cast<HDC>(i_wparam), GetSysColor(COLOR_WINDOW));
        SetTextColor(reinterpret_cast<HDC>(i_wparam), GetSysColor(COLOR_WINDOWTEXT));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
    case WM_SETCURSOR:
        if (LOWORD(i_lparam) != HTCLIENT || !m_is_busy)
            break;
        SetCursor(LoadCursorW(nullptr, IDC_APPSTARTING));
        return TRUE;
    case WM_DESTROY:
        m_controls.clear(); // They are destroyed with the window.
        break;
    case WM_NCDESTROY:
        SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
        return DefWindowProcW(std::exchange(m_window, nullptr), i_message, i_wparam, i_lparam);
    default:
        break;
    }
    return DefWindowProcW(m_window, i_message, i_wparam, i_lparam);
}

void PageView::OnCommand(WORD i_control_id, WORD i_notification) {
    const std::size_t block = std::size_t{i_control_id} - first_control_id;
    if (block >= m_controls.size())
        return;
    const bool is_button = m_page.blocks[block].kind == Kind::Button || m_page.blocks[block].kind == Kind::Link;
    if (i_notification == (is_button ? BN_SETFOCUS : EN_SETFOCUS))
        m_scroller.Reveal(Control(block));
    else if (is_button && i_notification == BN_CLICKED)
        Activate(block);
}

void PageView::DrawLink(const DRAWITEMSTRUCT& i_request) const {
    LOGFONTW description{};
    GetObjectW(m_layout.FontOf(Kind::Link), sizeof(description), &description);
    description.lfUnderline = TRUE;
    const Font underlined(CreateFontIndirectW(&description));
    const std::wstring text = WindowText(i_request.hwndItem);
    RECT rect = i_request.rcItem;
    FillRect(i_request.hDC, &rect, GetSysColorBrush(COLOR_WINDOW));
    if ((i_request.itemState & ODS_FOCUS) != 0)
        DrawFocusRect(i_request.hDC, &rect);
    const HGDIOBJ old_font = SelectObject(i_request.hDC, underlined.get());
    SetBkMode(i_request.hDC, TRANSPARENT);
    SetTextColor(i_request.hDC, link_color);
    InflateRect(&rect, -1, -1);
    DrawTextW(i_request.hDC, text.c_str(), static_cast<int>(text.size()), &rect, DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(i_request.hDC, old_font);
}

} // namespace DevHost
