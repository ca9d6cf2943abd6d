#include "afs/ObjectLookup.h"

#include "core/trace/Trace.h"
#include "dropbox/MissingObject.h"

std::shared_ptr<SharePoint::Object> FindObject(SharePoint::Web& io_web, const std::wstring& i_path,
                                               SharePoint::Web::BindObjectType i_type) {
    TRACE_FUNCTION();
    try {
        return io_web.BindObject(i_path, i_type);
    } catch (const HttpException& e) {
        if (!Dropbox::SaysMissing(e))
            throw;
        return {};
    }
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
