#pragma once

#include "qorv/Base.h"

#include <string>

/// Why something failed. What code needs to examine has its own members, so that nothing has to search the words.
struct FailureReason {
    std::wstring words{};   ///< In the user's language if they are the system's; empty if only the code is known.
    DWORD http_status = 0;  ///< Of the service's reply; 0 if the failure did not come from a reply.
    std::wstring summary{}; ///< The service's own tag, such as "path/not_found/..", or its sentence; may be empty.
};

/// Leaves the reason of a failure for the thread's caller in the COM error info: the words as its description, the
/// status as its help context, the service's summary as its source.
void SetThreadReason(const FailureReason& i_reason) noexcept;

/// The same for a failure that has only a code: the reason is the system's words for it.
void SetThreadCode(HRESULT i_code) noexcept;

/// At the end of a failed COM method: whether the reason came from `SetThreadCode` and has not been reported yet.
/// `o_words` is then its text. If there is no reason at all, leaves the code's own.
bool TakeThreadCode(HRESULT i_code, std::wstring& o_words);

/// The reason that the thread's last failed COM method left; empty if there is none. Reading it removes it.
FailureReason TakeThreadReason() noexcept;
