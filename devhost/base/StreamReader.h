#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// Returns the bytes of a stream from its position to its end. Throws a `Failure` when it cannot be read.
std::string ReadToEnd(IStream* i_stream);

} // namespace DevHost
