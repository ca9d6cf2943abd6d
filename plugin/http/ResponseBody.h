#pragma once

#include "http/Response.h"

#include <cstddef>
#include <string>

namespace Http {

/// Reads a reply's body to its end, or until `io_body` has `i_limit` bytes or a few more. When that fails, what came
/// before is in `io_body`.
void AppendBody(Response& io_response, std::string& io_body, std::size_t i_limit = std::string::npos);

} // namespace Http
