#include "uix/DialogWindow.h"

#include "base/Failure.h"
#include "uix/WindowPlace.h"

namespace DevHost {
namespace {

/// The template of an empty dialog: no menu, the system's class, no title, no items.
struct EmptyTemplate {
    DLGTEMPLATE header{};
    WORD menu = 0;
    WORD window_class = 0;
    WORD title = 0;
};

SIZE WindowSize(SIZE i_client_size, DWORD i_style, DWORD i_extended_style) {
    RECT rect{0, 0, i_client_size.cx, i_client_size.cy};
    AdjustWindowRectEx(&rect, i_style, FALSE, i_extended_style);
    return {rect.right - rect.left, rect.bottom - rect.top};
}

/// The top-level window: callers may pass any of its children as the owner.
HWND TopLevel(HWND i_window) {
    return i_window != nullptr ? GetAncestor(i_window, GA_ROOT) : nullptr;
}

} // namespace

/// Disables the owner. Enables it again before the dialog is destroyed, so that the system activates it and not another
/// program's window.
class DialogWindow::DisabledOwner {
public:
    explicit DisabledOwner(HWND i_owner) noexcept
        : m_owner(i_owner != nullptr && EnableWindow(i_owner, FALSE) == FALSE ? i_owner : nullptr) {}
    ~DisabledOwner() {
        if (m_owner != nullptr)
            EnableWindow(m_owner, TRUE);
    }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;

private:
    HWND m_owner; ///< Null if there is none, or if it was already disabled: then we must not enable it.
};

DialogWindow::DialogWindow(HWND i_owner, DWORD i_style, DWORD i_extended_style, const std::wstring& i_title,
                           SIZE i_client_size)
    : m_owner(TopLevel(i_owner)) {
    EmptyTemplate empty;
    empty.header.style = i_style & ~DWORD{WS_VISIBLE};
    empty.header.dwExtendedStyle = i_extended_style;
    m_window = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &empty.header, m_owner, DialogProcedure,
                                          reinterpret_cast<LPARAM>(this));
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make a window");
    SetWindowTextW(m_window, i_title.c_str());
    const RECT place = CentredPlace(WindowSize(i_client_size, i_style, i_extended_style), m_owner);
    SetWindowPos(m_window, nullptr, static_cast<int>(place.left), static_cast<int>(place.top),
                 static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

DialogWindow::~DialogWindow() {
    if (m_window == nullptr)
        return;
    SetWindowLongPtrW(m_window, DWLP_USER, 0); // The object is half destroyed: it must get no more messages.
    DestroyWindow(m_window);
}

void DialogWindow::Destroy() noexcept {
    if (m_window != nullptr)
        DestroyWindow(m_window);
}

HRESULT DialogWindow::RunModal(LoopMonitors& io_monitors, LONG& io_result) {
    if (m_window == nullptr || m_is_running)
        return E_UNEXPECTED;
    m_result = io_result;
    m_is_ended = false;
    if (const HRESULT result = InitOnce(); FAILED(result))
        return result;
    {
        m_is_running = true;
        const DisabledOwner disabled_owner(m_owner);
        ShowWindow(m_window, m_is_ended ? SW_HIDE : SW_SHOW);
        PumpUntilEnded(io_monitors);
        m_is_running = false;
    }
    if (m_window != nullptr)
        ShowWindow(m_window, SW_HIDE);
    io_result = m_result;
    return S_OK;
}

HRESULT DialogWindow::InitOnce() {
    if (m_is_initialized)
        return S_OK;
    m_is_initialized = true;
    const HRESULT result = OnInit();
    return SUCCEEDED(result) && m_window == nullptr ? E_UNEXPECTED : result; // It may have been destroyed there.
}

void DialogWindow::PumpUntilEnded(LoopMonitors& io_monitors) {
    MSG message;
    while (!m_is_ended) {
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        if (io_monitors.Handle(message) || (m_window != nullptr && IsDialogMessageW(m_window, &message)))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void DialogWindow::EndModal(LONG i_result) noexcept {
    m_result = i_result;
    m_is_ended = true;
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); // Wakes the loop if it is already waiting.
}

std::optional<LRESULT> DialogWindow::OnMessage(UINT /*i_message*/, WPARAM /*i_wparam*/, LPARAM /*i_lparam*/) {
    return std::nullopt;
}

INT_PTR CALLBACK DialogWindow::DialogProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    if (i_message == WM_INITDIALOG) {
        reinterpret_cast<DialogWindow*>(i_lparam)->m_window = i_window;
        SetWindowLongPtrW(i_window, DWLP_USER, i_lparam);
        return FALSE; // The focus is set once the controls exist.
    }
    auto* const dialog = reinterpret_cast<DialogWindow*>(GetWindowLongPtrW(i_window, DWLP_USER));
    return dialog != nullptr ? dialog->Process(i_message, i_wparam, i_lparam) : FALSE;
}

/// Don't touch the object after calling an override, which may have released it.
INT_PTR DialogWindow::Process(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    switch (i_message) {
    case WM_COMMAND:
        if (LOWORD(i_wparam) == IDCANCEL) // Esc, and the close box too.
            EndModal(m_result);
        else
            OnCommand(LOWORD(i_wparam), HIWORD(i_wparam));
        return TRUE;
    case WM_SIZE:
        if (m_is_initialized)
            OnSize();
        return FALSE;
    case WM_DESTROY:
        OnDestroy();
        return FALSE;
    case WM_NCDESTROY:
        SetWindowLongPtrW(m_window, DWLP_USER, 0);
        m_window = nullptr;
        EndModal(m_result);
        return FALSE;
    default:
        break;
    }
    const HWND window = m_window;
    const std::optional<LRESULT> answer = OnMessage(i_message, i_wparam, i_lparam);
    if (!answer)
        return FALSE;
    if (i_message >= WM_CTLCOLORMSGBOX && i_message <= WM_CTLCOLORSTATIC)
        return static_cast<INT_PTR>(*answer); // These brushes are answered directly.
    SetWindowLongPtrW(window, DWLP_MSGRESULT, *answer);
    return TRUE;
}

} // namespace DevHost
