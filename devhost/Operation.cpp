#include "Operation.h"

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
    if (reason.find(L"HTTP 401") != reason.npos)
        reason += L". The service no longer takes the saved token: sign in again (qorvhost login)";
    throw Failure(i_result, m_subject + L": " + reason);
}

} // namespace DevHost
