#pragma once

#include "uix/DialogItem.h"
#include "uix/ListImages.h"
#include "uix/RowEditor.h"

#include <optional>

namespace DevHost {

/// A list of rows in columns that takes its content from a source: the system's list view with owner data.
class List final : public Qorv::CoClass<List, DialogItem, Qorv::IUIX_List> {
public:
    LRESULT OnNotify(NMHDR& io_notification) override;

    HRESULT STDMETHODCALLTYPE put_Source(Qorv::IUIX_ListSource* i_source) noexcept override;
    HRESULT STDMETHODCALLTYPE AddColumn(Qorv::PCStr i_title, LONG i_width, ULONG i_alignment) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SortMark(LONG i_column, VARIANT_BOOL i_is_descending) noexcept override;
    HRESULT STDMETHODCALLTYPE get_RowCount(LONG* o_count) noexcept override;
    HRESULT STDMETHODCALLTYPE put_RowCount(LONG i_count) noexcept override;
    HRESULT STDMETHODCALLTYPE put_EmptyText(Qorv::PCStr i_text) noexcept override;
    HRESULT STDMETHODCALLTYPE put_IsBusy(VARIANT_BOOL i_is_busy) noexcept override;
    HRESULT STDMETHODCALLTYPE put_IsMultiSelect(VARIANT_BOOL i_is_multi_select) noexcept override;
    HRESULT STDMETHODCALLTYPE GetNextSelected(LONG i_after_row, LONG* o_row) noexcept override;
    HRESULT STDMETHODCALLTYPE SelectRow(LONG i_row, VARIANT_BOOL i_is_selected) noexcept override;
    HRESULT STDMETHODCALLTYPE get_FocusedRow(LONG* o_row) noexcept override;
    HRESULT STDMETHODCALLTYPE put_FocusedRow(LONG i_row) noexcept override;
    HRESULT STDMETHODCALLTYPE EditRow(LONG i_row, LONG i_selected_length) noexcept override;
    HRESULT STDMETHODCALLTYPE get_EditedText(BSTR* o_text) noexcept override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;
    LRESULT OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) override;
    void OnGone() override;

    std::wstring CellText(int i_row, int i_column) const;
    void FillCell(LVITEMW& io_cell);
    LRESULT DrawRow(NMLVCUSTOMDRAW& io_request) const;
    int FindRow(const NMLVFINDITEMW& i_request);
    std::wstring TypedSince(const std::wstring& i_text);
    void OnEdited(const LVITEMW& i_row);
    void FitColumn(int i_column) const;
    void AskForMenu(HWND i_for, LPARAM i_place);
    POINT PlaceForMenu() const;
    void PaintEmptyText() const;
    LONG RowsBottom() const;

    HWND Header() const { return reinterpret_cast<HWND>(Send(LVM_GETHEADER)); }
    LONG RowCount() const { return static_cast<LONG>(Send(LVM_GETITEMCOUNT)); }
    LONG FocusedRow() const { return NextRow(-1, LVNI_FOCUSED); }
    LONG NextRow(LONG i_after_row, UINT i_state) const;
    bool HasRow(LONG i_row) const { return i_row >= 0 && i_row < RowCount(); }
    void HoldPainting();
    void ReleasePainting();
    void MarkColumn(int i_column, int i_mark) const;
    void SetRowState(LONG i_row, UINT i_state, UINT i_mask) const;
    HRESULT BeginEdit(LONG i_row, LONG i_selected_length);

    std::optional<ListImages> m_images;
    std::optional<RowEditor> m_row_editor;
    Qorv::ComPtr<Qorv::IUIX_ListSource> m_source;
    std::wstring m_empty_text;
    std::wstring m_typed;     ///< Last looked for by type-ahead.
    std::wstring m_old_typed; ///< What was typed of it for other rows.
    bool m_is_painting_held = false;
    bool m_is_busy = false;
};

/// Whether a list's control takes no input just now (`IUIX_List::put_IsBusy`).
bool IsListBusy(HWND i_control);

} // namespace DevHost
