#pragma once

#include "dropbox/SharePoint.h"

// Looking up remote objects that may not exist. The service reports a missing object as an error; here that is the
// empty result. Every other failure is thrown: an object that is locked or restricted, or whose kind is missing from
// the service's reply, does exist.

/// Whether an object is of the wanted kind.
bool IsOfType(SharePoint::Object& i_object, SharePoint::Web::BindObjectType i_type);

/// The object at a path; empty if nothing of the wanted kind is there.
std::shared_ptr<SharePoint::Object> FindObject(SharePoint::Web& io_web, const std::wstring& i_path,
                                               SharePoint::Web::BindObjectType i_type);

/// Refreshes an object's metadata; false if the object is gone.
bool RefreshObject(SharePoint::Object& io_object);
