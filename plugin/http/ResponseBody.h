#pragma once

#include "http/Response.h"

#include <cstddef>
#include <string>

namespace Http {

/// Appends a reply's body to `io_body`, until the body ends or `io_body` has `i_limit` bytes. If a read fails,
/// `io_body` holds what came before.
void AppendBody(Response& io_response, std::string& io_body, std::size_t i_limit = std::string::npos);

} // namespace Http
