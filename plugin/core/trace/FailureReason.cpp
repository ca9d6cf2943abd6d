#include "core/trace/FailureReason.h"

#include "qorv/Values.h"

// Not traced: a check's report comes here.

void SetThreadReason(const FailureReason& i_reason) noexcept {
    Qorv::ComPtr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(&creator)))
        return;
    // The texts are only read; the declarations are old ones.
    creator->SetDescription(const_cast<wchar_t*>(i_reason.words.c_str()));
    creator->SetSource(const_cast<wchar_t*>(i_reason.summary.c_str()));
    creator->SetHelpContext(i_reason.http_status);
    Qorv::ComPtr<IErrorInfo> info;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info))))
        SetErrorInfo(0, info);
}

FailureReason TakeThreadReason() noexcept {
    Qorv::ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, &info) != S_OK)
        return {};
    try {
        FailureReason reason;
        Qorv::Bstr text;
        if (SUCCEEDED(info->GetDescription(&text)))
            reason.words = text.View();
        if (SUCCEEDED(info->GetSource(&text)))
            reason.summary = text.View();
        info->GetHelpContext(&reason.http_status);
        return reason;
    } catch (...) {
        return {}; // No memory for the words: the code alone must do.
    }
}
