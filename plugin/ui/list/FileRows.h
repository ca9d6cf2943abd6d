#pragma once

#include "ui/list/FileRow.h"
#include "ui/names/NamesFilter.h"
#include "ui/names/TypedNames.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Ui {

/// The rows of the file list: those of a folder's items that pass the filter, in the order that the user chose. The
/// "../" row always comes first, and folders come before files, whatever the order. Belongs to one thread.
class FileRows {
public:
    /// Reads a folder's items. The names are bound, so that the service is not asked. An item that cannot be read is
    /// logged and left out. The parent folder may be null: then there is no "../" row. Filter and order stay.
    void Load(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, Qorv::IAFS_Name* i_parent_folder);

    /// Lets go of items that no longer exist.
    void Remove(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names);

    /// Lets go of all items. Filter and order stay.
    void Clear() noexcept;

    /// Shows the folders and, unless only folders are wanted, the files that pass the filter (all without one). The
    /// filter is kept, and asked when items are loaded.
    void SetFilter(std::shared_ptr<NamesFilter> i_filter, bool i_is_folders_only);
    /// Shows the files whose titles match a pattern like "*.fdf;inv*", in place of those that pass the filter; an empty
    /// one brings the filter back. Loading keeps it.
    void SetPattern(std::wstring i_pattern);
    const std::wstring& GetPattern() const noexcept { return m_pattern; }
    /// Applies the filter again, after it has changed.
    void Refilter();

    /// Kinds are ordered by extension. Rows that are equal in the column are ordered by name, ascending in either
    /// direction.
    void SortBy(FileColumn i_column, bool i_is_descending);

    // The shown rows, in order. A reference is good until the next call that is not const.
    std::size_t size() const noexcept { return m_shown.size(); }
    const FileRow& operator[](std::size_t i_row) const noexcept { return m_rows[m_shown[i_row]]; }

    /// Whether anything but the "../" row is shown, and if not, why.
    enum class Content { some, no_folders, none_of_type, nothing };
    Content GetContent() const noexcept;

    /// The shown row with this title, else one that differs in case only; never one that merely resembles it
    /// (`IsSameName`), nor the "../" row.
    std::optional<std::size_t> FindTitle(std::wstring_view i_title) const;

    /// The first shown row whose title begins with a text, ignoring case, searching from a row to the end and then from
    /// the beginning. Never the "../" row. An empty text matches no title.
    std::optional<std::size_t> FindPrefix(std::wstring_view i_prefix, std::size_t i_first_row) const;

private:
    using RowIndex = std::uint32_t; ///< Into `m_rows`.

    bool IsShown(const FileRow& i_row) const;
    void Show();
    void Order();
    std::vector<ULONGLONG> SortValues() const;

    std::vector<FileRow> m_rows;   ///< All items, by name: among equal values the lower index comes first.
    std::vector<RowIndex> m_shown; ///< What is shown, in order: no text moves when order or filter change.
    std::shared_ptr<NamesFilter> m_filter;
    std::wstring m_pattern;
    bool m_is_folders_only = false;
    FileColumn m_column = FileColumn::name;
    bool m_is_descending = false;
};

} // namespace Ui
