#include "host/Operation.h"

#include "qorv/Values.h"

namespace DevHost {
namespace {

/// The COM error info left by the thread's last call. Besides the sentence, the plug-in puts the parts of a service's
/// answer there: the status as the help context, the service's error tag as the source.
struct ThreadReason {
    std::wstring text;
    DWORD status = 0;
    std::wstring service_word;
};

ThreadReason TakeThreadReason() {
    ThreadReason reason;
    Qorv::ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, &info) != S_OK)
        return reason;
    Qorv::Bstr text;
    info->GetDescription(&text);
    reason.text = text.View();
    info->GetSource(&text);
    reason.service_word = text.View();
    info->GetHelpContext(&reason.status);
    return reason;
}

struct Hint {
    DWORD status;          ///< 0 if the service's error tag decides.
    std::wstring_view tag; ///< Of the service's error tag.
    std::wstring_view advice;
};

constexpr DWORD status_unauthorized = 401;
constexpr DWORD status_too_large = 413;
constexpr DWORD status_too_many = 429;
constexpr std::wstring_view too_large = L"The file is larger than Dropbox takes in one piece (150 MB)";
constexpr Hint hints[] = {
    {status_unauthorized, {}, L"The service refuses the token: sign in again (qorvhost login)"},
    {status_too_many, {}, L"The service is busy: try again later"},
    {0, L"/conflict/", L"Something with this name already exists"},
    {0, L"insufficient_space", L"The account is full"},
    {0, L"payload_too_large", too_large},
    {status_too_large, {}, too_large},
};

/// Adds what the service's answer means to the user.
std::wstring WithHint(std::wstring i_sentence, const ThreadReason& i_reason) {
    for (const Hint& hint : hints)
        if (hint.tag.empty() ? i_reason.status == hint.status : i_reason.service_word.find(hint.tag) != hint.tag.npos)
            return i_sentence + L". " + std::wstring(hint.advice);
    return i_sentence;
}

} // namespace

void Operation::Check(HRESULT i_result, std::wstring_view i_invalid) const {
    if (SUCCEEDED(i_result))
        return;
    const ThreadReason left = TakeThreadReason();
    const std::wstring said = m_details->Text();
    std::wstring reason = ReasonInWords(i_result, said.empty() ? left.text : said);
    if (i_result == E_INVALIDARG && reason == CodeInWords(E_INVALIDARG))
        reason = i_invalid;
    const std::wstring sentence = m_subject + L": " + WithHint(reason, left);
    if (left.status == status_unauthorized)
        throw SignInNeeded(i_result, sentence);
    throw Failure(i_result, sentence);
}

} // namespace DevHost
