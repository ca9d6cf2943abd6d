#include "core/trace/FailureReason.h"

#include "core/trace/ErrorText.h"
#include "core/trace/Trace.h"
#include "qorv/Values.h"

// Only `TakeThreadReason` is traced: checks report through this file.

namespace {

/// Marks the error info of a failure that has only a code.
constexpr GUID only_code = {0x1c3f1f0e, 0x6f5b, 0x4f52, {0x9a, 0x0e, 0x3b, 0x57, 0x29, 0xd4, 0x61, 0x8c}};

void SetReason(const FailureReason& i_reason, const GUID& i_mark) noexcept {
    Qorv::ComPtr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(&creator)))
        return;
    // The texts are only read; the declarations lack the const.
    creator->SetDescription(const_cast<wchar_t*>(i_reason.words.c_str()));
    creator->SetSource(const_cast<wchar_t*>(i_reason.summary.c_str()));
    creator->SetHelpContext(i_reason.http_status);
    creator->SetGUID(i_mark);
    Qorv::ComPtr<IErrorInfo> info;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info))))
        SetErrorInfo(0, info);
}

} // namespace

void SetThreadReason(const FailureReason& i_reason) noexcept {
    SetReason(i_reason, GUID_NULL);
}

void SetThreadCode(HRESULT i_code) noexcept {
    const DWORD last_error = GetLastError();
    try {
        SetReason({.words = HResultText(i_code, user_language)}, only_code);
    } catch (...) {
        // Out of memory: the code must do without the words.
    }
    SetLastError(last_error);
}

bool TakeThreadCode(HRESULT i_code, std::wstring& o_words) {
    Qorv::ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, &info) != S_OK) {
        SetThreadReason({.words = HResultText(i_code, user_language)});
        return false;
    }
    GUID mark = GUID_NULL;
    info->GetGUID(&mark);
    if (mark != only_code) {
        SetErrorInfo(0, info);
        return false;
    }
    o_words = HResultText(i_code, user_language);
    SetThreadReason({.words = o_words});
    return true;
}

FailureReason TakeThreadReason() noexcept {
    TRACE_FUNCTION();
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
        return {}; // Out of memory: the code must do without the words.
    }
}
