#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "ui/list/CellText.h"
#include "ui/list/DialogUi.h"
#include "ui/list/FileRows.h"

#include <optional>
#include <string>
#include <vector>

namespace Ui {

/// The list of a dialog: shows the rows of a folder in the host's list control, in the order that the user chooses. UI
/// thread.
class FileList final : public Qorv::CoClass<FileList, Qorv::IUIX_ListSource> {
public:
    /// The host's UI service outlives the list.
    FileList(Qorv::IQorv_Inst* i_host_instance, Qorv::IUIX_List* i_control, const DialogUi& i_ui);
    ~FileList();

    /// Makes the columns, and becomes the control's source.
    HRESULT Init();
    /// Releases the control and the rows. Nothing of the list may be used after that.
    void Close() noexcept;

    void SetFilter(std::shared_ptr<NamesFilter> i_filter, bool i_is_folders_only);

    /// Removes all rows; the text appears in the list instead.
    HRESULT Empty(const std::wstring& i_text);
    /// The rows stay, but cannot be used until the next `Fill`, `EndLoading` or `Empty`. The text appears beneath them.
    HRESULT BeginLoading(const std::wstring& i_text);
    /// The rows can be used again.
    HRESULT EndLoading();
    /// Lists a folder. If there is nothing to see in it, the list says why. With `i_keeps_selection`, it is the folder
    /// that is listed already, and the selection stays.
    HRESULT Fill(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, Qorv::IAFS_Name* i_parent_folder,
                 bool i_keeps_selection);
    /// Removes the rows of items that no longer exist.
    HRESULT Remove(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names);
    /// Lists only the files that match a pattern, until another folder is listed or the filter changes.
    HRESULT SetPattern(const std::wstring& i_pattern);
    /// Applies the filter again. The selection stays.
    HRESULT Refresh();
    /// Sorts by a column; reverses the order if it is already sorted by it. The selection stays.
    HRESULT SortBy(LONG i_column);

    const FileRows& GetRows() const noexcept { return m_rows; }
    /// Null if there is no such row.
    const FileRow* GetRow(LONG i_row) const noexcept;
    std::vector<const FileRow*> GetSelection() const;
    /// Whether anything but the "../" row is selected.
    bool IsItemSelected() const;
    /// Selects every row but "../".
    HRESULT SelectAll();
    /// Selects the row of a title alone, and scrolls to it. False when there is none.
    bool Select(std::wstring_view i_title);

    /// Adds a row for a new folder at the end, and lets the user type its name there.
    HRESULT BeginNewFolder(const std::wstring& i_title);
    /// Lets the user type another name, which begins as the given one, for the one row that is selected.
    HRESULT BeginRename(const std::wstring& i_title);
    bool IsNamingNewFolder() const noexcept;
    /// Shows the rows without what was typed, and returns that; no value if no name was typed or the user gave up.
    std::optional<std::wstring> EndNaming();

    HRESULT STDMETHODCALLTYPE GetCellText(LONG i_row, LONG i_column, BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE GetRowImage(LONG i_row, Qorv::IUIX_Image** o_image) noexcept override;
    HRESULT STDMETHODCALLTYPE FindRow(Qorv::PCStr i_text, LONG i_first_row, LONG* o_row) noexcept override;

private:
    /// By titles: rows move and go, names are other objects after a reload.
    struct Selection {
        std::vector<std::wstring> titles;
        std::wstring focused; ///< Of the selected ones, or empty.
        LONG first_row = -1;  ///< The place of the first one.
    };

    Selection RememberSelection() const;
    HRESULT ShowRows(const Selection& i_selection);
    HRESULT ShowContentText();

    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    Qorv::ComPtr<Qorv::IUIX_List> m_control;
    const DialogUi& m_ui;
    CellText m_cell_text;
    FileRows m_rows;
    FileColumn m_sort_column = FileColumn::name;
    bool m_is_descending = false;

    struct Naming {
        LONG row; ///< One behind the last for a new folder.
        std::wstring title;
    };
    std::optional<Naming> m_naming; ///< What is being named in place.
};

} // namespace Ui
