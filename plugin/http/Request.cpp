#include "http/Request.h"

#include "core/trace/Check.h"
#include "http/FailedReply.h"
#include "http/HttpException.h"

#include <algorithm>

namespace Http {

Request::Request() : m_impl(std::make_shared<Impl>()) {
    TRACE_FUNCTION();
}

std::uint32_t Request::Write(const void* data, std::size_t size) {
    TRACE_FUNCTION();
    size = std::min<std::size_t>(size, MAXDWORD);
    DWORD written_size = 0;
    CHECK_THROW(InternetWriteFile(m_impl->handle, data, static_cast<DWORD>(size), &written_size), RequestFailure());
    return written_size;
}

Response Request::Send() {
    TRACE_FUNCTION();
    CHECK_THROW(HttpEndRequestW(m_impl->handle, nullptr, 0, 0), RequestFailure());
    Response response;
    response.m_impl->handle = std::move(m_impl->handle);

    const HINTERNET request_handle = response.Handle();
    DWORD status = 0;
    DWORD status_size = sizeof status;
    CHECK_THROW(
        HttpQueryInfoW(request_handle, HTTP_QUERY_FLAG_NUMBER | HTTP_QUERY_STATUS_CODE, &status, &status_size, nullptr),
        NoStatusException());
    const std::wstring error_summary = status >= 400 ? LogFailedReply(response, trace_function.Name()) : std::wstring();
    CheckIsWanted(); // The operation may have been stopped while a failed reply was read.
    CHECK_THROW(200 <= status && status < 400, HttpException(request_handle, {}, error_summary));
    response.m_impl->status = static_cast<std::uint16_t>(status);
    return response;
}

} // namespace Http
