#pragma once

#include "qorv/Base.h"

#include <optional>
#include <string>

namespace DevHost {

/// Lets the user edit the text of a list view's row in place. It lives as long as the control.
class RowEditor {
public:
    explicit RowEditor(HWND i_list) noexcept : m_list(i_list) {}

    /// Ends the editing of another row. The list must have the focus. The first characters are selected; -1 for all.
    bool Begin(int i_row, LONG i_selected_length);
    void GiveUp();

    /// Whether the control may begin editing (LVN_BEGINLABELEDIT): a second click on a row asks too.
    bool IsWanted() const noexcept { return m_is_wanted; }

    /// The control is done (LVN_ENDLABELEDIT). The text is null if the user cancelled or left it unchanged.
    void OnEnd(const wchar_t* i_typed_text, const std::wstring& i_old_text);

    /// The result of the last edit; nothing if the user cancelled.
    const std::optional<std::wstring>& Text() const noexcept { return m_text; }

private:
    static LRESULT CALLBACK EditProcedure(HWND i_edit, UINT i_message, WPARAM i_wparam, LPARAM i_lparam,
                                          UINT_PTR i_subclass_id, DWORD_PTR i_editor);

    HWND m_list;
    bool m_is_wanted = false;
    bool m_is_given_up = false;
    std::optional<std::wstring> m_text;
};

} // namespace DevHost
