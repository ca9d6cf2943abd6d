#pragma once

#include "core/trace/FunctionName.h"
#include "qorv/Afs.h"
#include "ui/folder/FolderItems.h"

#include <string>
#include <vector>

namespace Ui {

/// One name that the user typed, and the item that it means in the shown folder: none for a file that does not exist
/// yet.
struct TypedName {
    std::wstring text;
    Qorv::ComPtr<Qorv::IAFS_Name> name{};
    Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item{};
    bool is_folder = false;
};

/// Finds typed names among the items of a folder by their titles, ignoring case; an exact match is preferred. A title
/// that is merely similar (`IsSameName`) is not found. An item whose title cannot be read is logged under the
/// caller's name and left out.
void MatchTypedNames(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, std::vector<TypedName>& io_names,
                     const FunctionName& i_caller);

} // namespace Ui
