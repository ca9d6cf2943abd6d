#pragma once

#include "core/FunctionName.h"
#include "http/Response.h"

#include <string>

namespace Http {

/// Reads a reply of status 400 or more to its end and writes it to the log under the caller's name: address, headers,
/// body. Returns the service's own word for the failure ("path/not_found/.."), empty when it gave none.
std::wstring LogFailedReply(Response& io_response, const FunctionName& i_caller);

} // namespace Http
