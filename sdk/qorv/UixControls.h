#pragma once

#include "qorv/Base.h"

// The items of the UI service's dialogs: controls whose kind, id and place come from the layout. Everything here
// belongs to the main thread. Rows, columns and indices count from 0; E_INVALIDARG for one out of range. The plug-in's
// own changes to an item cause no events.

namespace Qorv {

struct IUIX_Image;

/// What an item reports to the dialog's sink, and what the event's detail is.
enum UIX_ItemEventKind : ULONG {
    UIX_ItemEvent_Click = 1,            ///< A button was pressed, or a label clicked. No detail: 0.
    UIX_ItemEvent_Changed = 2,          ///< The user changed an edit's text, or a combo's selection. 0.
    UIX_ItemEvent_SelectionChanged = 3, ///< The user changed a list's selection. 0.
    UIX_ItemEvent_Activated = 4,        ///< Double click on a list's row, or Enter in the list: the row.
    UIX_ItemEvent_ColumnClicked = 5,    ///< The header of a list's column was clicked: the column.
    UIX_ItemEvent_RowEdited = 6,        ///< The editing of a row has ended (`IUIX_List::EditRow`): the row.
    UIX_ItemEvent_ContextMenu = 7,      ///< A list's menu is requested: its place on the screen, as in WM_CONTEXTMENU.
    UIX_ItemEvent_Command = 8,          ///< A command of a command bar: its id.
};

/// Any item. `QueryInterface` gives this and the interface of the item's kind. It may be kept after the dialog is
/// destroyed: its methods then fail.
struct IUIX_Item : IUnknown {
    static constexpr IID Id = {0x6bb4750d, 0xe508, 0x4fcf, {0xb3, 0xff, 0x80, 0x65, 0x17, 0xed, 0x27, 0x66}};
    virtual HRESULT STDMETHODCALLTYPE get_Text(BSTR* o_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Text(PCStr i_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_IsEnabled(VARIANT_BOOL i_is_enabled) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_IsVisible(VARIANT_BOOL i_is_visible) = 0;
    /// Whether the item has the keyboard focus.
    virtual HRESULT STDMETHODCALLTYPE get_HasFocus(VARIANT_BOOL* o_has_focus) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFocus() = 0;
};

/// A text.
struct IUIX_Label : IUnknown {
    static constexpr IID Id = {0x8c1d4f70, 0x2a96, 0x4be3, {0x9d, 0x05, 0x61, 0xf7, 0x3b, 0x8e, 0xa2, 0x14}};
    /// Where a single line that doesn't fit is cut: at the end initially. One that is cut in the middle keeps its last
    /// part, like a path, and has the whole text as its tool tip.
    virtual HRESULT STDMETHODCALLTYPE put_IsCutInMiddle(VARIANT_BOOL i_is_cut_in_middle) = 0;
    /// Its place on the screen, such as for a menu beneath it.
    virtual HRESULT STDMETHODCALLTYPE get_ScreenRect(RECT* o_rect) = 0;
};

/// A single-line edit box.
struct IUIX_Edit : IUnknown {
    static constexpr IID Id = {0xfd19e78c, 0xec88, 0x4a30, {0xac, 0xa2, 0xd1, 0xe5, 0x02, 0xb4, 0x29, 0x93}};
    /// Selects the characters from the first to before the last position; -1 for the last one means the text's end. The
    /// caret goes to the last one.
    virtual HRESULT STDMETHODCALLTYPE SelectText(LONG i_first, LONG i_last) = 0;
};

/// What a plug-in stores with an item of a control: a number, or a pointer that the plug-in must free.
using PARAM_T = UINT_PTR;

/// A combo: a drop-down list with one item, or none, selected. Indices count from 0; E_INVALIDARG for one out of range.
struct IUIX_Combo : IUnknown {
    static constexpr IID Id = {0x5f0c7b64, 0x93de, 0x4c1f, {0xb8, 0x27, 0x3c, 0x6e, 0x14, 0x9a, 0x70, 0xd5}};
    /// Removes all items. Their stored values are not freed.
    virtual HRESULT STDMETHODCALLTYPE Clear() = 0;
    /// Puts an item before the one at the index, or at the end (-1). The hint is the combo's tool tip while the item is
    /// selected; hint and icon may be null, and a host may leave the icon out. The flags are reserved, 0.
    virtual HRESULT STDMETHODCALLTYPE InsertItem(LONG i_index, PCStr i_text, PCStr i_hint, IUIX_Image* i_icon,
                                                 PARAM_T i_param, ULONG i_flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Count(LONG* o_count) = 0;
    /// -1 if none is selected.
    virtual HRESULT STDMETHODCALLTYPE get_SelItem(LONG* o_index) = 0;
    /// -1 selects none. Causes no event.
    virtual HRESULT STDMETHODCALLTYPE put_SelItem(LONG i_index) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetItemText(LONG i_index, BSTR* o_text) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetItemParam(LONG i_index, PARAM_T* o_param) = 0;
};

/// Where a list takes its rows from, whenever it draws one. No call of the list may be made from inside.
struct IUIX_ListSource : IUnknown {
    static constexpr IID Id = {0xddf1be51, 0x449c, 0x4009, {0x81, 0xdc, 0xaf, 0x4d, 0x3e, 0x90, 0x0e, 0x08}};
    virtual HRESULT STDMETHODCALLTYPE GetCellText(LONG i_row, LONG i_column, BSTR* o_text) = 0;
    /// S_OK and null for a row without an image.
    virtual HRESULT STDMETHODCALLTYPE GetRowImage(LONG i_row, IUIX_Image** o_image) = 0;
    /// For type-ahead: the first row whose text begins with the given one, ignoring case; searches from the given row
    /// to the end and then from the start. -1 if there is none.
    virtual HRESULT STDMETHODCALLTYPE FindRow(PCStr i_text, LONG i_first_row, LONG* o_row) = 0;
};

/// The alignment of a column's cells.
enum UIX_Alignment : ULONG { UIX_Alignment_Left = 0, UIX_Alignment_Right = 1 };

/// A list of rows in columns, with a header. It stores no rows: it asks its source for the visible ones, so any number
/// is cheap.
struct IUIX_List : IUnknown {
    static constexpr IID Id = {0x84f1a576, 0x3e64, 0x4a1f, {0xae, 0xd6, 0x06, 0x69, 0x34, 0x64, 0x5f, 0x43}};
    /// The list holds a reference until another source (or null) is set, or its window is destroyed.
    virtual HRESULT STDMETHODCALLTYPE put_Source(IUIX_ListSource* i_source) = 0;
    /// Adds a column at the right. The width is in the layout's units.
    virtual HRESULT STDMETHODCALLTYPE AddColumn(PCStr i_title, LONG i_width, ULONG i_alignment) = 0;
    /// Marks the column by which the rows are sorted; -1 for none.
    virtual HRESULT STDMETHODCALLTYPE put_SortMark(LONG i_column, VARIANT_BOOL i_is_descending) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_RowCount(LONG* o_count) = 0;
    /// The source now has different rows: the list asks for all again, and none is selected or has the focus. Events
    /// about the old rows that are still pending are dropped; editing is cancelled.
    virtual HRESULT STDMETHODCALLTYPE put_RowCount(LONG i_count) = 0;
    /// Shown beneath the list's rows, which may be none; nothing initially.
    virtual HRESULT STDMETHODCALLTYPE put_EmptyText(PCStr i_text) = 0;
    /// A busy list greys its rows and takes neither mouse nor keys for them: they are about to be replaced. It keeps
    /// the focus, and Enter is the default button's.
    virtual HRESULT STDMETHODCALLTYPE put_IsBusy(VARIANT_BOOL i_is_busy) = 0;
    /// Whether several rows can be selected; initially as the layout says. Selected rows stay selected.
    virtual HRESULT STDMETHODCALLTYPE put_IsMultiSelect(VARIANT_BOOL i_is_multi_select) = 0;
    /// The first selected row after the given one (-1 to begin); -1 when there is none.
    virtual HRESULT STDMETHODCALLTYPE GetNextSelected(LONG i_after_row, LONG* o_row) = 0;
    /// -1 means all rows.
    virtual HRESULT STDMETHODCALLTYPE SelectRow(LONG i_row, VARIANT_BOOL i_is_selected) = 0;
    /// The row with the focus; -1 for none.
    virtual HRESULT STDMETHODCALLTYPE get_FocusedRow(LONG* o_row) = 0;
    /// Also scrolls the row into view.
    virtual HRESULT STDMETHODCALLTYPE put_FocusedRow(LONG i_row) = 0;
    /// Lets the user type another text for the row, in place. The first characters are selected (-1: all). Its end is
    /// reported (`UIX_ItemEvent_RowEdited`); only the source changes the row.
    virtual HRESULT STDMETHODCALLTYPE EditRow(LONG i_row, LONG i_selected_length) = 0;
    /// What the user typed last; call it in the event. S_FALSE and null if the user cancelled.
    virtual HRESULT STDMETHODCALLTYPE get_EditedText(BSTR* o_text) = 0;
};

/// One command of a command bar or a menu. It is only read during the call.
struct UIX_Command {
    LONG id = 0;                            ///< From 1; 0 is a separator, which uses no other member.
    PCStr text = nullptr;                   ///< The text in a menu, the tool tip in a command bar.
    IUIX_Image* image = nullptr;            ///< For a command bar; menus have only texts.
    VARIANT_BOOL is_enabled = VARIANT_TRUE; ///< Initially.
};

/// A row of small buttons with pictures.
struct IUIX_CommandBar : IUnknown {
    static constexpr IID Id = {0x1e7e9088, 0x13c7, 0x4b78, {0xa1, 0xd5, 0xf9, 0x61, 0x04, 0x17, 0x27, 0x32}};
    virtual HRESULT STDMETHODCALLTYPE put_IsCommandEnabled(LONG i_command_id, VARIANT_BOOL i_is_enabled) = 0;
};

} // namespace Qorv
