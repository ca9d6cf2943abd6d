#pragma once

#include "browser/Page.h"
#include "browser/WebRequest.h"

namespace DevHost {

/// What the browser shows of a reply: its page, or one that says in words why there is none.
Page PageOf(const WebReply& i_reply);

/// What it shows before the first page has come.
Page LoadingPage();

} // namespace DevHost
