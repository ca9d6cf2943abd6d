#pragma once

#include "core/trace/FunctionName.h"
#include "http/Response.h"

#include <string>

namespace Http {

/// Reads a reply of status 400 or more to its end and writes it to the log under the caller's name: address, headers,
/// body. With the log off it reads no more than the beginning. Returns the service's own word for the failure
/// ("path/not_found/.."), or the first line of a plain text, empty when it gave neither.
std::wstring LogFailedReply(Response& io_response, const FunctionName& i_caller);

} // namespace Http
