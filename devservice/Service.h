#pragma once

#include "Accounts.h"
#include "Faults.h"
#include "Options.h"
#include "RequestLog.h"
#include "SignInSessions.h"
#include "TlsAuthority.h"

#include <atomic>

namespace DevService {

/// What the connections share.
struct Service {
    Accounts accounts;
    RequestLog requests;
    Faults faults;
    SignInSessions sign_ins;
    TlsAuthority authority;
    std::atomic<std::size_t> page_size = Paging().page_size;
    std::atomic<bool> has_empty_pages = false;
    std::atomic<unsigned> json_reply_count = 0;
    std::uint64_t max_upload = Options::default_max_upload; ///< bytes of content in one request

    Paging CurrentPaging() const { return {page_size, has_empty_pages}; }
};

} // namespace DevService
