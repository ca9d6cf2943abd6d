#pragma once

#include "http/HttpException.h"

namespace Dropbox {

/// Whether a refused call says that there is no object at the path.
bool SaysMissing(const HttpException& i_exception) noexcept;

} // namespace Dropbox
