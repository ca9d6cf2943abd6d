#pragma once

#include "core/trace/FunctionName.h"
#include "http/Response.h"

#include <string>

namespace Http {

/// Reads a reply of status 400 or more to its end and logs its address, headers and body under the caller's name. With
/// the log off, it reads only the beginning. Returns the service's own word for the failure ("path/not_found/.."), or
/// the first line of a plain-text reply; empty if there is neither.
std::wstring LogFailedReply(Response& io_response, const FunctionName& i_caller);

} // namespace Http
