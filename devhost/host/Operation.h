#pragma once

#include "base/Failure.h"
#include "services/CancelFlag.h"
#include "services/ErrorDetails.h"

#include <string>
#include <string_view>

namespace DevHost {

/// The service refused an account's token: only a new sign-in helps.
class SignInNeeded final : public Failure {
public:
    using Failure::Failure;
};

/// One operation of the plug-in: the error details and cancel flag that it takes, and its failure in words.
class Operation {
public:
    /// `i_subject` is what the operation is about; a failure's sentence begins with it.
    Operation(std::wstring_view i_subject, CancelFlag* i_cancel_flag)
        : m_subject(i_subject), m_cancel_flag(i_cancel_flag) {}

    Qorv::IQorv_ErrorDetails* Details() const noexcept { return m_details; }
    Qorv::IQorv_CancelFlag* Cancel() const noexcept { return m_cancel_flag; }

    /// Throws a `Failure` for a failed result, a `SignInNeeded` for a refused token. `i_invalid` says what E_INVALIDARG
    /// means here.
    void Check(HRESULT i_result, std::wstring_view i_invalid = L"there is no such file or folder") const;

private:
    std::wstring m_subject;
    Qorv::ComPtr<ErrorDetails> m_details = Qorv::Create<ErrorDetails>();
    Qorv::ComPtr<CancelFlag> m_cancel_flag;
};

} // namespace DevHost
