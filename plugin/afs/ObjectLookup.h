#pragma once

#include "dropbox/SharePoint.h"

// Looking for remote objects that may not exist. The service answers a missing one with an error; here that is the
// empty result, and every other failure is thrown: a locked or restricted object is not a missing one, nor is one of
// which the service's reply does not say what it is.

/// Whether an object has the wanted side.
bool IsOfType(SharePoint::Object& i_object, SharePoint::Web::BindObjectType i_type);

/// The object at a path; empty when nothing of the wanted kind is there.
std::shared_ptr<SharePoint::Object> FindObject(SharePoint::Web& io_web, const std::wstring& i_path,
                                               SharePoint::Web::BindObjectType i_type);

/// Makes an object's information current; false when the object is gone.
bool RefreshObject(SharePoint::Object& io_object);
