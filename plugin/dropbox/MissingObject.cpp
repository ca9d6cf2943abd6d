#include "dropbox/MissingObject.h"

#include "core/trace/Trace.h"

namespace {

constexpr DWORD status_endpoint_error = 409; // The summary says what went wrong.
constexpr wchar_t missing_summary[] = L"path/not_found";

} // namespace

bool Dropbox::SaysMissing(const HttpException& i_exception) noexcept {
    TRACE_FUNCTION();
    return i_exception.Status() == status_endpoint_error && i_exception.ErrorSummary().starts_with(missing_summary);
}
