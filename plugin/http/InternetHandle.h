#pragma once

#include "qorv/Base.h"

#include <wininet.h>

#include <memory>
#include <type_traits>

namespace Http {

struct InternetHandleCloser {
    void operator()(HINTERNET i_handle) const noexcept { InternetCloseHandle(i_handle); }
};

/// An owned WinINet handle.
using InternetHandle = std::unique_ptr<std::remove_pointer_t<HINTERNET>, InternetHandleCloser>;

} // namespace Http
