#include "core/trace/Check.h"

#include "core/trace/ErrorText.h"
#include "qorv/Values.h"

#include <new>

namespace {

/// Writes an exit line. A line that cannot be composed is lost. Keeps the last error.
template <typename Compose>
void WriteExit(FunctionTrace& io_trace, Compose&& i_compose) noexcept {
    if (!IsLogEnabled())
        return;
    const DWORD last_error = GetLastError();
    try {
        io_trace.WriteExit(i_compose());
    } catch (...) {
        io_trace.WriteExit({});
    }
    SetLastError(last_error);
}

void TellCaller(Qorv::IQorv_ErrorDetails* o_details, HRESULT i_code, const FailureReason& i_reason) noexcept {
    if (o_details != nullptr)
        o_details->SetError(i_code, i_reason.words.c_str());
    SetThreadReason(i_reason);
}

HRESULT ReturnException(FunctionTrace& io_trace, Qorv::IQorv_ErrorDetails* o_details, HRESULT i_code,
                        const wchar_t* i_expression, const Exception& i_exception) noexcept {
    TellCaller(o_details, i_code, i_exception.Reason());
    if (FAILED(i_code))
        Detail::ReportReturn(io_trace, i_expression, i_code);
    return i_code;
}

} // namespace

void Detail::ReportReturn(FunctionTrace& io_trace, const wchar_t* i_expression, HRESULT i_code) noexcept {
    WriteExit(io_trace, [&] {
        return L"Expression: \"" + std::wstring(i_expression) + L"\" caused returning \"" + HResultText(i_code) + L"\"";
    });
}

void Detail::ReportRefusal(FunctionTrace& io_trace, const wchar_t* i_expression, HRESULT i_code) noexcept {
    ReportReturn(io_trace, i_expression, i_code);
    SetThreadCode(i_code);
}

HRESULT Detail::ReturnCode(HRESULT i_code, Qorv::IQorv_ErrorDetails* o_details) noexcept {
    try {
        std::wstring words;
        if (SUCCEEDED(i_code))
            SetErrorInfo(0, nullptr);
        else if (TakeThreadCode(i_code, words) && o_details != nullptr)
            o_details->SetError(i_code, words.c_str());
    } catch (...) {
        // Out of memory: the code must do without the words.
    }
    return i_code;
}

void Detail::ReportThrow(FunctionTrace& io_trace, const wchar_t* i_expression, const Exception& i_exception) noexcept {
    // Unlike the sentence for a return, this one has no colon, which tells the two apart.
    WriteExit(io_trace, [&] {
        return L"Expression \"" + std::wstring(i_expression) + L"\" caused throwing \"" + i_exception.Message() + L"\"";
    });
}

HRESULT Detail::ReturnCurrentException(FunctionTrace& io_trace, Qorv::IQorv_ErrorDetails* o_details) noexcept {
    try {
        throw;
    } catch (const HResultException& e) {
        return ReturnException(io_trace, o_details, e.m_hresult, L"e.m_hresult", e);
    } catch (const Exception& e) {
        return ReturnException(io_trace, o_details, E_FAIL, L"E_FAIL", e);
    } catch (const std::bad_alloc&) {
        ReportRefusal(io_trace, L"E_OUTOFMEMORY", E_OUTOFMEMORY);
        return ReturnCode(E_OUTOFMEMORY, o_details);
    } catch (...) {
        ReportRefusal(io_trace, L"E_FAIL", E_FAIL);
        return ReturnCode(E_FAIL, o_details);
    }
}
