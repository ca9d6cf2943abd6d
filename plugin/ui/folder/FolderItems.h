#pragma once

#include "qorv/Afs.h"

#include <map>

namespace Ui {

/// What a folder holds, ordered by the names' addresses, not by their text.
using FolderItems = std::map<Qorv::ComPtr<Qorv::IAFS_Name>, Qorv::ComPtr<Qorv::IAFS_EnumFolderItem>>;

} // namespace Ui
