#pragma once

#include "qorv/Afs.h"

#include <string>

namespace DevHost {

/// A name as its file system writes it: the full location. Throws a `Failure` if the file system refuses.
std::wstring LocationOf(Qorv::IAFS_Name* i_name);

/// The path in the account, for people; "/" for the root.
std::wstring DisplayPathOf(Qorv::IAFS_Name* i_name);

} // namespace DevHost
