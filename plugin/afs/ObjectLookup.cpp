#include "afs/ObjectLookup.h"

#include "core/trace/Check.h"
#include "dropbox/MissingObject.h"

bool IsOfType(SharePoint::Object& i_object, SharePoint::Web::BindObjectType i_type) {
    TRACE_FUNCTION();
    using Type = SharePoint::Web::BindObjectType;
    switch (i_type) {
    case Type::file:
        return i_object.AsFile() != nullptr;
    case Type::folder:
        return i_object.AsFolder() != nullptr;
    default:
        return true;
    }
}

std::shared_ptr<SharePoint::Object> FindObject(SharePoint::Web& io_web, const std::wstring& i_path,
                                               SharePoint::Web::BindObjectType i_type) {
    TRACE_FUNCTION();
    std::shared_ptr<SharePoint::Object> object;
    try {
        // Accepts any kind of object, so that an empty answer has only one meaning.
        object = io_web.BindObject(i_path, SharePoint::Web::BindObjectType::any);
    } catch (const HttpException& e) {
        if (!Dropbox::SaysMissing(e))
            throw;
        return {};
    }
    CHECK_THROW(object != nullptr, Exception(L"The service does not say whether this is a file or a folder"));
    return IsOfType(*object, i_type) ? object : nullptr;
}

bool RefreshObject(SharePoint::Object& io_object) {
    TRACE_FUNCTION();
    try {
        io_object.Refresh();
        return true;
    } catch (const HttpException& e) {
        if (!Dropbox::SaysMissing(e))
            throw;
        return false;
    }
}
