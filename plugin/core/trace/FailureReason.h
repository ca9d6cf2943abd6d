#pragma once

#include "qorv/Base.h"

#include <string>

/// Why something failed. The parts that code asks for stand beside the words for a person: nobody searches a sentence.
struct FailureReason {
    std::wstring words{};   ///< In the user's language where the system says them; empty when only the code is known.
    DWORD http_status = 0;  ///< Of the service's reply; 0 when the failure is none of a reply.
    std::wstring summary{}; ///< The service's own word for it, such as "path/not_found/..", or its sentence; or empty.
};

/// Leaves the reason of a failure for the thread's caller, in the COM error info: the words as its description, the
/// status as its help context, the service's word as its source.
void SetThreadReason(const FailureReason& i_reason) noexcept;

/// The reason that the thread's last failed COM method left, empty when there is none. It is gone after that.
FailureReason TakeThreadReason() noexcept;
