#pragma once

#include "http/HttpException.h"

namespace Dropbox {

/// Whether a refused call says that there is no object at the path. Only the service's own word for it counts: a 404 is
/// what anybody on the way says who does not know the service.
bool SaysMissing(const HttpException& i_exception) noexcept;

} // namespace Dropbox
