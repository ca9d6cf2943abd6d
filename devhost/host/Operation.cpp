#include "host/Operation.h"

#include "qorv/Values.h"

namespace DevHost {
namespace {

/// What the thread's last call left for callers without a details object.
std::wstring ThreadErrorText() {
    Qorv::ComPtr<IErrorInfo> info;
    Qorv::Bstr text;
    if (GetErrorInfo(0, &info) == S_OK)
        info->GetDescription(&text);
    return std::wstring(text.View());
}

struct Hint {
    std::wstring_view sign; ///< What the service's answer holds.
    std::wstring_view advice;
};

constexpr std::wstring_view too_large = L"The file is larger than Dropbox takes in one piece (150 MB)";
constexpr Hint hints[] = {
    {L"HTTP 401", L"The service refuses the token: sign in again (qorvhost login)"},
    {L"HTTP 429", L"The service is busy: try again later"},
    {L"/conflict/", L"Something of this name is there already"},
    {L"insufficient_space", L"The account is full"},
    {L"payload_too_large", too_large},
    {L"HTTP 413", too_large},
};

/// Adds what the service's own word means for a person.
std::wstring WithHint(std::wstring i_reason) {
    for (const Hint& hint : hints)
        if (i_reason.find(hint.sign) != i_reason.npos)
            return i_reason + L". " + std::wstring(hint.advice);
    return i_reason;
}

} // namespace

void Operation::Check(HRESULT i_result, std::wstring_view i_invalid) const {
    if (SUCCEEDED(i_result))
        return;
    std::wstring said = m_details->Text();
    if (said.empty())
        said = ThreadErrorText();
    std::wstring reason = ReasonInWords(i_result, said);
    if (i_result == E_INVALIDARG && reason == CodeInWords(E_INVALIDARG))
        reason = i_invalid;
    throw Failure(i_result, m_subject + L": " + WithHint(reason));
}

} // namespace DevHost
