#pragma once

#include "http/HttpException.h"

namespace Dropbox {

/// Whether a refused call says that there is no object at the path. Only the service's own word for it counts:
/// anybody on the way who does not know the service may answer 404.
bool SaysMissing(const HttpException& i_exception) noexcept;

} // namespace Dropbox
