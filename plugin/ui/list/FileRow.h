#pragma once

#include "qorv/Afs.h"

#include <string>

namespace Ui {

/// The columns of the file list, as the list counts them.
enum class FileColumn : LONG { name, size, kind, date };

/// One row of the file list: what is shown of an item of the folder, and the item.
struct FileRow {
    std::wstring title;     ///< "../" for the parent folder's row.
    std::string sort_key;   ///< Of the title (`NaturalSortKey`).
    std::wstring extension; ///< A file's, in capitals and without the dot; empty where there is none.
    ULONGLONG size = 0;     ///< In bytes; 0 for a folder.
    ULONGLONG modified = 0; ///< File time: 100 ns since 1601, UTC. 0 when it is not known, as for folders.
    bool is_folder = false;
    bool is_parent = false; ///< The "../" row, which is a folder's too.
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item; ///< Null for the parent folder.
};

} // namespace Ui
