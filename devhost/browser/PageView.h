#pragma once

#include "browser/Page.h"
#include "browser/PageLayout.h"
#include "browser/WebRequest.h"
#include "uix/Scroller.h"

#include <functional>
#include <optional>
#include <vector>

namespace DevHost {

/// The window that shows a page: texts, fields, buttons and links from top to bottom, as system controls. Its window
/// text is the page's address; empty while another page is loading. Main thread only.
class PageView {
public:
    /// Receives the view's notifications, from its window procedure.
    struct Listener {
        std::function<void(WebRequest)> on_request; ///< A link or a form's button was pressed.
        std::function<void(UINT)> on_message; ///< One of the listener's own messages (WM_APP and above) has arrived.
    };

    /// Throws a `Failure`.
    PageView(HWND i_parent, const RECT& i_place, Listener i_listener);
    ~PageView();
    PageView(const PageView&) = delete;
    PageView& operator=(const PageView&) = delete;

    HWND Window() const noexcept { return m_window; }

    void Show(Page i_page, const std::wstring& i_url);

    /// Disables everything on the page while another page is loading.
    void SetBusy(bool i_is_busy);

    /// Tab, Enter, and the scrolling keys. True if the key was handled.
    bool TranslateKey(const MSG& i_message);

private:
    static LRESULT CALLBACK WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    LRESULT Process(UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    void OnCommand(WORD i_control_id, WORD i_notification);
    void DrawLink(const DRAWITEMSTRUCT& i_request) const;
    void Clear() noexcept;
    void Arrange();
    void FocusFirstField() const;
    void Activate(std::size_t i_block);
    /// The block whose control has the focus.
    std::optional<std::size_t> FocusedBlock() const;
    void PressDefaultButton(std::size_t i_field);
    HWND Control(std::size_t i_block) const noexcept { return m_controls[i_block]; }

    Listener m_listener;
    HWND m_window = nullptr;
    Scroller m_scroller;
    PageLayout m_layout;
    Page m_page;
    std::wstring m_url;
    std::vector<HWND> m_controls; ///< One for each block; null for a hidden one.
    bool m_is_busy = false;
};

} // namespace DevHost
