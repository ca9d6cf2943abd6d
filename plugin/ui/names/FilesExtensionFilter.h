#pragma once

#include "core/trace/FunctionName.h"
#include "qorv/Afs.h"
#include "qorv/Uix.h"
#include "ui/names/FilterString.h"
#include "ui/names/NamesFilter.h"

#include <string>
#include <string_view>

/// The file types that the caller of a dialog offers, as the items of a combo: whether a name passes the selected one,
/// and which extension a typed name gets. Belongs to the combo's thread, and must not outlive the combo's items.
class FilesExtensionFilter final : public NamesFilter {
public:
    FilesExtensionFilter(Qorv::IAFS_FileSys* i_file_system, Qorv::IUIX_Combo* i_combo);
    /// Clears the combo.
    ~FilesExtensionFilter() override;
    FilesExtensionFilter(const FilesExtensionFilter&) = delete;
    FilesExtensionFilter& operator=(const FilesExtensionFilter&) = delete;

    /// Fills the combo from a filter string (see `ParseFilterString`) and selects its first item.
    HRESULT SetFilter(std::wstring_view i_filters);

    /// Empties the combo and frees its items' data.
    HRESULT Clear();

    /// By the extension of the name's last path element, case ignored.
    bool IsValid(Qorv::IAFS_Name* i_name) override;

    /// Gives a typed name the extension of the selected file type, unless it already has one of that type.
    /// `default_ext` is for an empty name when no type is selected. Every decision is logged.
    void AddFilterExtension(std::wstring& io_name, std::wstring_view default_ext);

private:
    HRESULT Insert(const Ui::FilterEntry& i_entry);
    /// A combo item's data; null if there is no such item.
    Ui::FilterExtensions* ItemExtensions(LONG i_index);
    LONG SelectedIndex();
    /// Null when no item is selected.
    Ui::FilterExtensions* SelectedExtensions();
    bool IsInOtherItem(std::wstring_view i_extension, const FunctionName& i_caller);

    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Qorv::ComPtr<Qorv::IUIX_Combo> m_combo;
};
