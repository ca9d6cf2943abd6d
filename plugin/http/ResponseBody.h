#pragma once

#include "http/Response.h"

#include <string>

namespace Http {

/// Reads a reply's body to its end. When that fails, what came before is in `io_body`.
void AppendBody(Response& io_response, std::string& io_body);

} // namespace Http
