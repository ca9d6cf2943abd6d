#pragma once

#include "uix/DialogItem.h"
#include "uix/ToolTips.h"

#include <span>
#include <vector>

namespace DevHost {

/// A row of small flat buttons with pictures. Tab moves to the row, the arrow keys along it, Enter and Space press a
/// button.
class CommandBar final : public Qorv::CoClass<CommandBar, DialogItem, Qorv::IUIX_CommandBar> {
public:
    /// Throws a `Failure` with E_INVALIDARG for a command without a picture or with a wrong id.
    explicit CommandBar(std::span<const Qorv::UIX_Command> i_commands);

    ~CommandBar();

    /// The row's width in pixels.
    SIZE Size() const noexcept;

    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;

    HRESULT STDMETHODCALLTYPE put_IsCommandEnabled(LONG i_command_id, VARIANT_BOOL i_is_enabled) noexcept override;

private:
    struct Command {
        LONG id; ///< 0 for a separator.
        std::wstring text;
        Qorv::ComPtr<Bitmap> picture;
        bool is_enabled_at_first;
        HWND button;
    };

    static LRESULT CALLBACK ButtonProcedure(HWND i_button, UINT i_message, WPARAM i_wparam, LPARAM i_lparam,
                                            UINT_PTR i_subclass_id, DWORD_PTR i_bar);

    LRESULT OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) override;
    void MakeButton(Command& io_command, const RECT& i_place) const;
    void DrawButton(const DRAWITEMSTRUCT& i_request) const;
    void OnMouse(HWND i_button);
    bool OnKey(HWND i_button, WPARAM i_key);
    void GoFrom(HWND i_button, int i_step) const;
    void KeepTabStop(HWND i_wanted) const;
    const Command* CommandOf(HWND i_button) const noexcept;

    std::vector<Command> m_commands;
    ToolTips m_tool_tips;
    HWND m_hot_button = nullptr; ///< The button under the mouse.
};

} // namespace DevHost
