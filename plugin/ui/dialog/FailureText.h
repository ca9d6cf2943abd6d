#pragma once

#include "core/trace/FailureReason.h"
#include "qorv/Host.h"

#include <string>

namespace Ui {

/// A failed call of the provider: its code, and its reason, which may be empty.
struct Failure {
    HRESULT code = E_UNEXPECTED;
    FailureReason reason{};
};

/// Whether the account's token was refused, so that only a new sign-in helps.
bool IsSignInNeeded(const Failure& i_failure) noexcept;

/// Whether only the answer to a change may have been lost, so that the change itself may have been made.
bool MayHaveSucceeded(const Failure& i_failure) noexcept;

/// The failure in words for a person: first what it means and what to do, then the service's or the system's own words,
/// at most 300 characters of them, without control and direction characters.
std::wstring FailureText(Qorv::IQorv_Inst* i_host_instance, const Failure& i_failure);

} // namespace Ui
