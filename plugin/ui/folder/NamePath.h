#pragma once

#include "qorv/Afs.h"

#include <string>

namespace Ui {

// What can be found out about a name without asking the service.

/// The path in the account: empty for its root, and for a name that isn't the file system's.
std::wstring PathOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name);

/// The last element of the path.
std::wstring TitleOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name);

/// The name of the account's user. Only for a name that is bound, such as a folder's that has been listed; empty if it
/// cannot be had.
std::wstring UserNameOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_bound_name);

/// The root of a name's account; null for no name.
Qorv::ComPtr<Qorv::IAFS_Name> RootOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name);

} // namespace Ui
