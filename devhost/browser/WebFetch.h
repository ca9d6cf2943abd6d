#pragma once

#include "browser/WebRequest.h"

#include <atomic>

namespace DevHost {

/// Fetches a document over WinINet, redirects followed, with WinINet's cookies. Blocks; any thread. Gives up as soon as
/// it notices that `i_is_stopped` is set: between two calls of WinINet, never inside one.
WebReply FetchFromWeb(const WebRequest& i_request, const std::atomic<bool>& i_is_stopped);

} // namespace DevHost
