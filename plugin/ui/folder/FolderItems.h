#pragma once

#include "qorv/Afs.h"

#include <map>

namespace Ui {

/// What a folder holds, by the names' references: the order is theirs, not the texts'.
using FolderItems = std::map<Qorv::ComPtr<Qorv::IAFS_Name>, Qorv::ComPtr<Qorv::IAFS_EnumFolderItem>>;

} // namespace Ui
