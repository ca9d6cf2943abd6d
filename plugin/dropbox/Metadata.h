#pragma once

#include "dropbox/Json.h"
#include "dropbox/SharePoint.h"

namespace Dropbox {

/// The record of a metadata object of the service. Its kind is `i_forced_kind` ("file" or "folder") when one is given,
/// because some replies name none. Throws an `Exception` for an object that lacks what its kind must have.
SharePoint::ObjectInformation ReadMetadata(const Utility::JsonValue& i_metadata,
                                           const wchar_t* i_forced_kind = nullptr);

} // namespace Dropbox
