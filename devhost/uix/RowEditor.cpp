#include "uix/RowEditor.h"

#include <commctrl.h>

namespace DevHost {
namespace {

constexpr UINT_PTR subclass_id = 1;

} // namespace

bool RowEditor::Begin(int i_row, LONG i_selected_length) {
    m_is_wanted = true;
    m_is_given_up = false;
    const auto edit = reinterpret_cast<HWND>(SendMessageW(m_list, LVM_EDITLABELW, static_cast<WPARAM>(i_row), 0));
    m_is_wanted = false;
    SendMessageW(edit, EM_SETSEL, 0, i_selected_length);
    return edit != nullptr && SetWindowSubclass(edit, &EditProcedure, subclass_id, reinterpret_cast<DWORD_PTR>(this));
}

void RowEditor::GiveUp() {
    m_is_given_up = true;
    if (SendMessageW(m_list, LVM_GETEDITCONTROL, 0, 0) != 0)
        SendMessageW(m_list, LVM_CANCELEDITLABEL, 0, 0);
}

void RowEditor::OnEnd(const wchar_t* i_typed_text, const std::wstring& i_old_text) {
    m_text.reset();
    if (!m_is_given_up)
        m_text = i_typed_text != nullptr ? i_typed_text : i_old_text;
}

/// The edit box is destroyed before the list, and the list before this object.
LRESULT CALLBACK RowEditor::EditProcedure(HWND i_edit, UINT i_message, WPARAM i_wparam, LPARAM i_lparam,
                                          UINT_PTR i_subclass_id, DWORD_PTR i_editor) {
    if (i_message == WM_KEYDOWN && i_wparam == VK_ESCAPE)
        reinterpret_cast<RowEditor*>(i_editor)->m_is_given_up = true;
    if (i_message == WM_NCDESTROY)
        RemoveWindowSubclass(i_edit, &EditProcedure, i_subclass_id);
    return DefSubclassProc(i_edit, i_message, i_wparam, i_lparam);
}

} // namespace DevHost
