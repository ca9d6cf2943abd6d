#pragma once

#include "browser/Page.h"
#include "browser/WebRequest.h"

namespace DevHost {

/// The page to show for a reply: the reply's own, or one that says why there is none.
Page PageOf(const WebReply& i_reply);

/// The page shown before the first one has loaded.
Page LoadingPage();

} // namespace DevHost
