#include "uix/List.h"

#include "qorv/Values.h"

#include <oleacc.h>

#include <algorithm>

namespace DevHost {
namespace {

constexpr DWORD multi_select_style = 0x400; // Of a layout.

// Layout units.
constexpr int empty_text_margin = 24;
constexpr int cell_padding = 16; // The control's margin beside a cell's text.

/// Above all of the control's own.
UINT PaintMessage() {
    static const UINT message = RegisterWindowMessageW(L"QorvHostListPaint");
    return message;
}

// On a busy list's control.
constexpr wchar_t busy_property[] = L"QorvHostListBusy";

bool IsRowInput(UINT i_message) {
    return (i_message >= WM_LBUTTONDOWN && i_message <= WM_MBUTTONDBLCLK) || i_message == WM_KEYDOWN ||
           i_message == WM_CHAR || i_message == WM_CONTEXTMENU;
}

bool ChangesSelection(UINT i_old_state, UINT i_new_state) {
    return ((i_old_state ^ i_new_state) & LVIS_SELECTED) != 0;
}

} // namespace

void List::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    m_images.emplace(Scale::OfScreen());
    // The control always allows editing; we refuse it unless it was requested.
    DWORD style = WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_EDITLABELS | LVS_SHAREIMAGELISTS;
    if ((i_description.style & multi_select_style) == 0)
        style |= LVS_SINGLESEL;
    CreateControl(i_description, i_place, {WC_LISTVIEWW, style, WS_EX_CLIENTEDGE, ROLE_SYSTEM_LIST});
    m_row_editor.emplace(Window());
    constexpr LPARAM extended_style = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, extended_style, extended_style);
    SendPointer(LVM_SETIMAGELIST, LVSIL_SMALL, m_images->Handle());
}

void List::OnGone() {
    m_source.Reset();
    m_images.reset();
}

// The control's requests and notifications.

LRESULT List::OnNotify(NMHDR& io_notification) {
    switch (io_notification.code) {
    case LVN_GETDISPINFOW:
        FillCell(reinterpret_cast<NMLVDISPINFOW&>(io_notification).item);
        return 0;
    case NM_CUSTOMDRAW:
        return DrawRow(reinterpret_cast<NMLVCUSTOMDRAW&>(io_notification));
    case LVN_ODFINDITEMW:
        return FindRow(reinterpret_cast<const NMLVFINDITEMW&>(io_notification));
    case LVN_ITEMCHANGED: {
        const auto& change = reinterpret_cast<const NMLISTVIEW&>(io_notification);
        if (ChangesSelection(change.uOldState, change.uNewState))
            Post(Qorv::UIX_ItemEvent_SelectionChanged);
        return 0;
    }
    case LVN_ODSTATECHANGED: {
        const auto& change = reinterpret_cast<const NMLVODSTATECHANGE&>(io_notification);
        if (ChangesSelection(change.uOldState, change.uNewState))
            Post(Qorv::UIX_ItemEvent_SelectionChanged);
        return 0;
    }
    case NM_DBLCLK:
        if (const int row = reinterpret_cast<const NMITEMACTIVATE&>(io_notification).iItem; row >= 0)
            Post(Qorv::UIX_ItemEvent_Activated, row);
        return 0;
    case LVN_COLUMNCLICK:
        Post(Qorv::UIX_ItemEvent_ColumnClicked, reinterpret_cast<const NMLISTVIEW&>(io_notification).iSubItem);
        return 0;
    case LVN_BEGINLABELEDITW:
        return m_row_editor->IsWanted() ? FALSE : TRUE; // True refuses.
    case LVN_ENDLABELEDITW:
        OnEdited(reinterpret_cast<const NMLVDISPINFOW&>(io_notification).item);
        return FALSE; // Only the source may change the row.
    default:
        return 0;
    }
}

LRESULT List::DrawRow(NMLVCUSTOMDRAW& io_request) const {
    if (!m_is_busy)
        return CDRF_DODEFAULT;
    if (io_request.nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (io_request.nmcd.dwDrawStage != CDDS_ITEMPREPAINT)
        return CDRF_DODEFAULT;
    io_request.clrText = GetSysColor(COLOR_GRAYTEXT);
    return CDRF_NEWFONT;
}

std::wstring List::CellText(int i_row, int i_column) const {
    Qorv::Bstr text;
    const bool is_given = m_source != nullptr && SUCCEEDED(m_source->GetCellText(i_row, i_column, &text));
    return std::wstring(is_given ? text.View() : std::wstring_view());
}

void List::FillCell(LVITEMW& io_cell) {
    if ((io_cell.mask & LVIF_TEXT) != 0) {
        // Copy into the control's buffer: it may ask for another cell while it still shows this one.
        const std::wstring text = CellText(io_cell.iItem, io_cell.iSubItem);
        lstrcpynW(io_cell.pszText, text.c_str(), io_cell.cchTextMax); // Cut where it is full.
    }
    if ((io_cell.mask & LVIF_IMAGE) != 0) {
        Qorv::ComPtr<Qorv::IUIX_Image> image;
        if (m_source != nullptr)
            m_source->GetRowImage(io_cell.iItem, &image);
        io_cell.iImage = m_images->IndexOf(image);
    }
}

int List::FindRow(const NMLVFINDITEMW& i_request) {
    LONG row = -1;
    if (m_source == nullptr || (i_request.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 ||
        i_request.lvfi.psz == nullptr)
        return -1;
    const LONG first_row = HasRow(i_request.iStart) ? i_request.iStart : 0;
    const std::wstring text = TypedSince(i_request.lvfi.psz);
    return SUCCEEDED(m_source->FindRow(text.c_str(), first_row, &row)) ? static_cast<int>(row) : -1;
}

/// The control collects the letters that are typed quickly, also across a change of the rows, for which they begin
/// anew.
std::wstring List::TypedSince(const std::wstring& i_text) {
    m_typed = i_text;
    if (i_text.size() <= m_old_typed.size() || !i_text.starts_with(m_old_typed))
        m_old_typed.clear(); // The control has begun anew by itself.
    return i_text.substr(m_old_typed.size());
}

void List::OnEdited(const LVITEMW& i_row) {
    m_row_editor->OnEnd(i_row.pszText, CellText(i_row.iItem, 0));
    Post(Qorv::UIX_ItemEvent_RowEdited, i_row.iItem);
}

LRESULT List::OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    if (i_message == PaintMessage()) {
        ReleasePainting();
        return 0;
    }
    if (m_is_busy && IsRowInput(i_message)) {
        if (i_message == WM_LBUTTONDOWN)
            ::SetFocus(Window());
        return 0;
    }
    switch (i_message) {
    case WM_GETDLGCODE: {
        // Enter goes to the list if it has a row that can be activated, else to the default button.
        const auto* const message = reinterpret_cast<const MSG*>(i_lparam);
        const LRESULT code = DialogItem::OnControlMessage(i_message, i_wparam, i_lparam);
        const bool is_enter = message != nullptr && message->message == WM_KEYDOWN && message->wParam == VK_RETURN;
        return is_enter && FocusedRow() != -1 && !m_is_busy ? code | DLGC_WANTMESSAGE : code;
    }
    case WM_KEYDOWN:
        if (i_wparam != VK_RETURN)
            break;
        if (const LONG row = FocusedRow(); row != -1)
            Post(Qorv::UIX_ItemEvent_Activated, row);
        return 0;
    case WM_NOTIFY:
        if (const auto& notification = *reinterpret_cast<const NMHEADERW*>(i_lparam);
            notification.hdr.code == HDN_DIVIDERDBLCLICKW) {
            FitColumn(notification.iItem);
            return 0;
        }
        break;
    case WM_CONTEXTMENU:
        AskForMenu(reinterpret_cast<HWND>(i_wparam), i_lparam);
        return 0;
    case WM_PAINT: {
        const LRESULT result = DialogItem::OnControlMessage(i_message, i_wparam, i_lparam);
        if (!m_empty_text.empty())
            PaintEmptyText();
        return result;
    }
    default:
        break;
    }
    return DialogItem::OnControlMessage(i_message, i_wparam, i_lparam);
}

/// Fits only the visible rows: the control would ask for all texts.
void List::FitColumn(int i_column) const {
    const auto first_row = static_cast<int>(Send(LVM_GETTOPINDEX));
    const int end_row = std::min(first_row + static_cast<int>(Send(LVM_GETCOUNTPERPAGE)) + 1, int{RowCount()});
    LRESULT text_width = 0;
    for (int row = first_row; row < end_row; ++row) {
        const std::wstring text = CellText(row, i_column);
        text_width = std::max(text_width, SendPointer(LVM_GETSTRINGWIDTHW, 0, text.c_str()));
    }
    const int image_width = i_column == 0 ? m_images->Width() : 0;
    const LRESULT width = text_width + image_width + Scale::OfScreen().Pixels(cell_padding);
    Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(i_column), width);
}

void List::AskForMenu(HWND i_for, LPARAM i_place) {
    constexpr LPARAM by_keyboard = -1;
    if (i_for != Window()) // The header has none.
        return;
    if (i_place == by_keyboard) {
        POINT place = PlaceForMenu();
        ClientToScreen(Window(), &place);
        i_place = MAKELPARAM(place.x, place.y);
    }
    Post(Qorv::UIX_ItemEvent_ContextMenu, static_cast<LONG>(i_place));
}

/// Below the title of the focused row, as far as that is visible.
POINT List::PlaceForMenu() const {
    RECT head;
    GetWindowRect(Header(), &head);
    RECT visible;
    GetClientRect(Window(), &visible);
    visible.top += head.bottom - head.top;
    POINT place{visible.left, visible.top};
    RECT title{};
    title.left = LVIR_LABEL;
    const LONG row = FocusedRow();
    if (row != -1 && SendPointer(LVM_GETITEMRECT, static_cast<WPARAM>(row), &title) != FALSE)
        place = {title.left, title.bottom};
    return {std::clamp(place.x, visible.left, visible.right), std::clamp(place.y, visible.top, visible.bottom)};
}

/// Painted over the control's own drawing. Fill the background first: smooth letters drawn twice look bold.
void List::PaintEmptyText() const {
    const LONG margin = Scale::OfScreen().Pixels(empty_text_margin);
    RECT head;
    GetWindowRect(Header(), &head);
    RECT area;
    GetClientRect(Window(), &area);
    area.top = std::max(area.top + head.bottom - head.top, RowsBottom()) + margin;
    InflateRect(&area, static_cast<int>(-margin), 0);
    if (area.top >= area.bottom)
        return;
    const HDC device = GetDC(Window());
    const HGDIOBJ old_font = SelectObject(device, reinterpret_cast<HGDIOBJ>(Send(WM_GETFONT)));
    FillRect(device, &area, GetSysColorBrush(COLOR_WINDOW));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    DrawTextW(device, m_empty_text.c_str(), static_cast<int>(m_empty_text.size()), &area,
              DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(device, old_font);
    ReleaseDC(Window(), device);
}

/// Of the visible area; 0 without rows.
LONG List::RowsBottom() const {
    RECT row{};
    row.left = LVIR_BOUNDS;
    const LONG count = RowCount();
    return count > 0 && SendPointer(LVM_GETITEMRECT, static_cast<WPARAM>(count - 1), &row) != FALSE ? row.bottom : 0;
}

// What the plug-in asks for.

HRESULT STDMETHODCALLTYPE List::put_Source(Qorv::IUIX_ListSource* i_source) noexcept {
    return WithControl([&] {
        m_source = i_source;
        InvalidateRect(Window(), nullptr, TRUE);
    });
}

HRESULT STDMETHODCALLTYPE List::AddColumn(Qorv::PCStr i_title, LONG i_width, ULONG i_alignment) noexcept {
    if (i_title == nullptr)
        return E_POINTER;
    if (i_width <= 0 || i_alignment > Qorv::UIX_Alignment_Right)
        return E_INVALIDARG;
    return WithControl([&] {
        std::wstring title = i_title;
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
        column.pszText = title.data();
        const auto head_width = static_cast<int>(SendPointer(LVM_GETSTRINGWIDTHW, 0, i_title));
        column.cx = std::max(Scale::OfScreen().Pixels(static_cast<int>(i_width)),
                             head_width + Scale::OfScreen().Pixels(cell_padding));
        column.fmt = i_alignment == Qorv::UIX_Alignment_Right ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.iSubItem = Header_GetItemCount(Header());
        return SendPointer(LVM_INSERTCOLUMNW, static_cast<WPARAM>(column.iSubItem), &column) >= 0 ? S_OK : E_FAIL;
    });
}

HRESULT STDMETHODCALLTYPE List::put_SortMark(LONG i_column, VARIANT_BOOL i_is_descending) noexcept {
    return WithControl([&] {
        const int count = Header_GetItemCount(Header());
        if (i_column < -1 || i_column >= count)
            return E_INVALIDARG;
        for (int column = 0; column < count; ++column)
            MarkColumn(column, column != i_column ? 0 : i_is_descending == VARIANT_FALSE ? HDF_SORTUP : HDF_SORTDOWN);
        return S_OK;
    });
}

/// No redrawing until the current message is over: otherwise each change of a row's state computes its place, and ten
/// thousand rows may be selected at once.
void List::HoldPainting() {
    if (m_is_painting_held || !PostMessageW(Window(), PaintMessage(), 0, 0))
        return;
    m_is_painting_held = true;
    Send(WM_SETREDRAW, FALSE);
}

void List::ReleasePainting() {
    if (!std::exchange(m_is_painting_held, false))
        return;
    Send(WM_SETREDRAW, TRUE);
    InvalidateRect(Window(), nullptr, TRUE);
}

void List::MarkColumn(int i_column, int i_mark) const {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    Header_GetItem(Header(), i_column, &item);
    item.fmt = (item.fmt & ~(HDF_SORTUP | HDF_SORTDOWN)) | i_mark;
    Header_SetItem(Header(), i_column, &item);
}

HRESULT STDMETHODCALLTYPE List::get_RowCount(LONG* o_count) noexcept {
    if (o_count == nullptr)
        return E_POINTER;
    *o_count = 0;
    return WithControl([&] { *o_count = RowCount(); });
}

/// Events about the old rows are dropped: the new rows may be different.
HRESULT STDMETHODCALLTYPE List::put_RowCount(LONG i_count) noexcept {
    if (i_count < 0)
        return E_INVALIDARG;
    return ChangeControl([&] {
        m_row_editor->GiveUp();
        ForgetEvents();
        m_old_typed = m_typed;
        HoldPainting();
        if (const LONG focused = FocusedRow(); focused != -1)
            SetRowState(focused, 0, LVIS_FOCUSED);
        Send(LVM_SETITEMCOUNT); // Missing rows are not selected.
        if (Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(i_count), LPARAM{0}) == FALSE)
            return E_OUTOFMEMORY;
        if (i_count > 0)
            Send(LVM_ENSUREVISIBLE, 0, FALSE);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE List::put_EmptyText(Qorv::PCStr i_text) noexcept {
    if (i_text == nullptr)
        return E_POINTER;
    return WithControl([&] {
        m_empty_text = i_text;
        SetWindowTextW(Window(), i_text); // For programs that ask for it, such as screen readers.
        InvalidateRect(Window(), nullptr, TRUE);
    });
}

bool IsListBusy(HWND i_control) {
    return GetPropW(i_control, busy_property) != nullptr;
}

HRESULT STDMETHODCALLTYPE List::put_IsBusy(VARIANT_BOOL i_is_busy) noexcept {
    return ChangeControl([&] {
        m_is_busy = i_is_busy != VARIANT_FALSE;
        if (m_is_busy) {
            m_row_editor->GiveUp();
            SetPropW(Window(), busy_property, reinterpret_cast<HANDLE>(UINT_PTR{1}));
        } else {
            RemovePropW(Window(), busy_property);
        }
        InvalidateRect(Window(), nullptr, TRUE);
    });
}

HRESULT STDMETHODCALLTYPE List::put_IsMultiSelect(VARIANT_BOOL i_is_multi_select) noexcept {
    return ChangeControl([&] {
        const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_STYLE);
        SetWindowLongPtrW(Window(), GWL_STYLE,
                          i_is_multi_select != VARIANT_FALSE ? style & ~LONG_PTR{LVS_SINGLESEL}
                                                             : style | LVS_SINGLESEL);
    });
}

LONG List::NextRow(LONG i_after_row, UINT i_state) const {
    return static_cast<LONG>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(i_after_row), MAKELPARAM(i_state, 0)));
}

HRESULT STDMETHODCALLTYPE List::GetNextSelected(LONG i_after_row, LONG* o_row) noexcept {
    if (o_row == nullptr)
        return E_POINTER;
    *o_row = -1;
    return WithControl([&] {
        if (i_after_row != -1 && !HasRow(i_after_row))
            return E_INVALIDARG;
        *o_row = NextRow(i_after_row, LVNI_SELECTED);
        return S_OK;
    });
}

void List::SetRowState(LONG i_row, UINT i_state, UINT i_mask) const {
    LVITEMW item{};
    item.state = i_state;
    item.stateMask = i_mask;
    SendPointer(LVM_SETITEMSTATE, static_cast<WPARAM>(i_row), &item);
}

HRESULT STDMETHODCALLTYPE List::SelectRow(LONG i_row, VARIANT_BOOL i_is_selected) noexcept {
    return ChangeControl([&] {
        if (i_row != -1 && !HasRow(i_row))
            return E_INVALIDARG;
        HoldPainting();
        SetRowState(i_row, i_is_selected != VARIANT_FALSE ? LVIS_SELECTED : 0, LVIS_SELECTED);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE List::get_FocusedRow(LONG* o_row) noexcept {
    if (o_row == nullptr)
        return E_POINTER;
    *o_row = -1;
    return WithControl([&] { *o_row = FocusedRow(); });
}

HRESULT STDMETHODCALLTYPE List::put_FocusedRow(LONG i_row) noexcept {
    return ChangeControl([&] {
        if (!HasRow(i_row))
            return E_INVALIDARG;
        HoldPainting();
        SetRowState(i_row, LVIS_FOCUSED, LVIS_FOCUSED);
        Send(LVM_SETSELECTIONMARK, 0, LPARAM{i_row}); // Where a range begins.
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(i_row), FALSE);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE List::EditRow(LONG i_row, LONG i_selected_length) noexcept {
    return WithControl([&] {
        if (!HasRow(i_row))
            return E_INVALIDARG;
        m_row_editor->GiveUp(); // Ending another row's editing is an event.
        return BeginEdit(i_row, i_selected_length);
    });
}

HRESULT List::BeginEdit(LONG i_row, LONG i_selected_length) {
    return ChangeControl([&] {
        ReleasePainting();
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(i_row), FALSE);
        SetFocus(); // The control edits only while it has it.
        return m_row_editor->Begin(static_cast<int>(i_row), i_selected_length) ? S_OK : E_FAIL;
    });
}

HRESULT STDMETHODCALLTYPE List::get_EditedText(BSTR* o_text) noexcept {
    if (o_text == nullptr)
        return E_POINTER;
    *o_text = nullptr;
    return WithControl([&] {
        const std::optional<std::wstring>& text = m_row_editor->Text();
        return text ? AnswerText(*text, o_text) : S_FALSE;
    });
}

} // namespace DevHost
