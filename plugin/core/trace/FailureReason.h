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

/// The same for a failure that is only a code: nothing but the system's words for it is known.
void SetThreadCode(HRESULT i_code) noexcept;

/// At the end of a failed COM method: whether the reason is that of `SetThreadCode` and nobody has been told of it yet.
/// `o_words` is its text then. Without any reason the code's own is left.
bool TakeThreadCode(HRESULT i_code, std::wstring& o_words);

/// The reason that the thread's last failed COM method left, empty when there is none. It is gone after that.
FailureReason TakeThreadReason() noexcept;
