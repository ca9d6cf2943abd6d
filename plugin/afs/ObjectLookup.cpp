#include "afs/ObjectLookup.h"

#include "core/trace/Exceptions.h"
#include "core/trace/Trace.h"

namespace {

constexpr DWORD status_not_found = 404;
constexpr DWORD status_endpoint_error = 409; // What went wrong stands in the summary.
constexpr wchar_t missing_summary[] = L"path/not_found";

bool SaysMissing(const HttpException& i_exception) noexcept {
    TRACE_FUNCTION();
    return i_exception.Status() == status_not_found ||
           (i_exception.Status() == status_endpoint_error && i_exception.ErrorSummary().starts_with(missing_summary));
}

} // namespace

std::shared_ptr<SharePoint::Object> FindObject(SharePoint::Web& io_web, const std::wstring& i_path,
                                               SharePoint::Web::BindObjectType i_type) {
    TRACE_FUNCTION();
    try {
        return io_web.BindObject(i_path, i_type);
    } catch (const HttpException& e) {
        if (!SaysMissing(e))
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
        if (!SaysMissing(e))
            throw;
        return false;
    }
}
