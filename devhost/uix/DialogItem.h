#pragma once

#include "qorv/Uix.h"
#include "uix/Layout.h"

#include <memory>
#include <optional>

namespace DevHost {

/// Where an item's control goes. Lengths are in pixels of the parent's client area.
struct ItemPlace {
    HWND parent = nullptr;
    RECT rect{};
    WORD control_id = 0;
    HFONT font = nullptr; ///< Outlives the item.
};

/// One item of a dialog: a control of the system. Its window goes with its parent's.
class DialogItem {
public:
    /// Makes an item of the kind that the layout says. Throws a `Failure` with E_INVALIDARG for an unknown kind.
    static std::unique_ptr<DialogItem> Create(const LayoutItem& i_description, const ItemPlace& i_place);

    virtual ~DialogItem() = default;
    DialogItem(const DialogItem&) = delete;
    DialogItem& operator=(const DialogItem&) = delete;

    const std::wstring& Id() const noexcept { return m_id; }
    HWND Window() const noexcept { return m_window; }

    /// What a notification of the control (the high word of WM_COMMAND) means to the dialog's sink; nothing for most.
    virtual std::optional<Qorv::UIX_ItemEventKind> EventOf(WORD i_notification) const;

    /// Paints a control that leaves its painting to its owner.
    virtual void Draw(const DRAWITEMSTRUCT& i_request) const;

protected:
    /// `i_style` is added to that of every child. Throws a `Failure`.
    DialogItem(const LayoutItem& i_description, const ItemPlace& i_place, const wchar_t* i_window_class, DWORD i_style);

private:
    std::wstring m_id;
    HWND m_window;
};

} // namespace DevHost
