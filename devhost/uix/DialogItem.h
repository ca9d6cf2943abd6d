#pragma once

#include "base/Failure.h"
#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "services/HostImages.h"
#include "uix/Layout.h"

namespace DevHost {

class DialogItem;

/// Receives what the user does to the items of a dialog.
class ItemEvents {
public:
    /// The dialog's sink gets events in order, after the current message, when it may destroy anything. An event that
    /// is already waiting is not added again.
    virtual void Post(DialogItem& io_item, Qorv::UIX_ItemEventKind i_kind, LONG i_detail) = 0;
    /// Forgets the item's events that the sink has not received yet.
    virtual void Forget(const DialogItem& i_item) = 0;
    /// A control of the item, or inside it, has received the focus.
    virtual void OnFocus(HWND i_control) = 0;

protected:
    ~ItemEvents() = default;
};

/// Where an item's control goes, and what it needs.
struct ItemPlace {
    HWND parent = nullptr;
    RECT rect{}; ///< Pixels of the parent's client area.
    WORD control_id = 0;
    HFONT font = nullptr;         ///< Outlives the control.
    ItemEvents* events = nullptr; ///< Outlives the control.
    HostImages* images = nullptr; ///< For pictures.
};

/// One item of a dialog: a system control, whose window is destroyed with its parent's. The object may live longer; its
/// methods then return E_UNEXPECTED. Main thread only.
///
/// Each kind of item is a co-class of this class and the kind's interface.
class DialogItem : public Qorv::IUIX_Item {
public:
    /// Creates an item of the kind given in the layout. Throws a `Failure` with E_INVALIDARG for an unknown kind or
    /// image.
    static Qorv::ComPtr<DialogItem> Create(const LayoutItem& i_description, const ItemPlace& i_place);

    DialogItem(const DialogItem&) = delete;
    DialogItem& operator=(const DialogItem&) = delete;

    const std::wstring& ItemId() const noexcept { return m_id; }
    /// Whether it stands in the dialog's fixed area.
    bool IsFixed() const noexcept { return m_is_fixed; }
    /// Null once it is destroyed.
    HWND Window() const noexcept { return m_window; }

    /// What screen readers call the item: the text of another item's control if there is one, else the given name, or
    /// the item's own text.
    void SetAccessibleName(std::wstring i_name, HWND i_label);

    /// The control's notification by WM_COMMAND.
    virtual void OnCommand(WORD /*i_notification*/) {}
    /// The control's notification by WM_NOTIFY; returns the answer.
    virtual LRESULT OnNotify(NMHDR& /*io_notification*/) { return 0; }
    /// Paints an owner-drawn control.
    virtual void Draw(const DRAWITEMSTRUCT& /*i_request*/) const {}

    HRESULT STDMETHODCALLTYPE get_Text(BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Text(Qorv::PCStr i_text) noexcept override;
    HRESULT STDMETHODCALLTYPE put_IsEnabled(VARIANT_BOOL i_is_enabled) noexcept override;
    HRESULT STDMETHODCALLTYPE put_IsVisible(VARIANT_BOOL i_is_visible) noexcept override;
    HRESULT STDMETHODCALLTYPE get_HasFocus(VARIANT_BOOL* o_has_focus) noexcept override;
    HRESULT STDMETHODCALLTYPE SetFocus() noexcept override;

protected:
    /// The styles of a control, beyond those of every child.
    struct ControlStyle {
        const wchar_t* window_class;
        DWORD style = 0;
        DWORD extended_style = 0;
        LONG role = 0; ///< For screen readers: one of ROLE_SYSTEM_.
    };

    DialogItem() = default;
    ~DialogItem();

    /// Creates the control. Not in the constructor: its messages add references, and nobody holds one yet. Throws a
    /// `Failure`.
    virtual void Make(const LayoutItem& i_description, const ItemPlace& i_place) = 0;

    /// Throws a `Failure`.
    void CreateControl(const LayoutItem& i_description, const ItemPlace& i_place, const ControlStyle& i_style);

    /// Handles a message of the control itself. Overrides pass on what they don't handle.
    virtual LRESULT OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam);

    /// The control is destroyed: release what it was using.
    virtual void OnGone() {}

    /// Reports an event; does nothing while `ChangeControl` runs.
    void Post(Qorv::UIX_ItemEventKind i_kind, LONG i_detail = 0);
    void ForgetEvents();
    void TellFocus(HWND i_control) const;

    /// Runs the body of a method that needs the control.
    template <typename Body>
    HRESULT WithControl(Body&& i_body) noexcept {
        return m_window != nullptr ? Answer(std::forward<Body>(i_body)) : E_UNEXPECTED;
    }

    /// Runs the body of a method with which the plug-in changes what the user could: that isn't an event.
    template <typename Body>
    HRESULT ChangeControl(Body&& i_body) noexcept {
        const bool was_own_change = std::exchange(m_is_own_change, true);
        const HRESULT result = WithControl(std::forward<Body>(i_body));
        m_is_own_change = was_own_change;
        return result;
    }

    LRESULT Send(UINT i_message, WPARAM i_wparam = 0, LPARAM i_lparam = 0) const {
        return SendMessageW(m_window, i_message, i_wparam, i_lparam);
    }
    LRESULT SendPointer(UINT i_message, WPARAM i_wparam, const void* i_pointer) const {
        return Send(i_message, i_wparam, reinterpret_cast<LPARAM>(i_pointer));
    }

private:
    static LRESULT CALLBACK ControlProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    void BeginListening();
    void EndListening() const;

    std::wstring AccessibleName() const;

    std::wstring m_id;
    std::wstring m_name;
    HWND m_label = nullptr;
    LONG m_role = 0;
    bool m_is_fixed = false;
    HWND m_window = nullptr;
    WNDPROC m_procedure = nullptr; ///< The control's original one.
    ItemEvents* m_events = nullptr;
    bool m_is_own_change = false;
};

} // namespace DevHost
