#pragma once

#include "dropbox/Json.h"
#include "dropbox/SharePoint.h"

namespace Dropbox {

/// The record of a metadata object of the service. Its kind is `i_forced_kind` ("file" or "folder") if given, because
/// some replies do not name one. Throws a `ReplyException` for an object that lacks what its kind must have.
SharePoint::ObjectInformation ReadMetadata(const Utility::JsonValue& i_metadata,
                                           const wchar_t* i_forced_kind = nullptr);

/// The record of a "file" or "folder" that the service has just written at `i_path`. Throws an `Exception` if the
/// metadata belongs to another one.
SharePoint::ObjectInformation ReadWritten(const Utility::JsonValue& i_metadata, const wchar_t* i_kind,
                                          const std::wstring& i_path);

} // namespace Dropbox
