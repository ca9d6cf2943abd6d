#pragma once

#include "core/trace/Exceptions.h"
#include "core/trace/Trace.h"
#include "qorv/Host.h"

#include <type_traits>

// How a traced function (`TRACE_FUNCTION`) checks its arguments and the calls it makes. Each check evaluates its
// expression once and logs the expression's own source text, so write it as it should read in the log.
//
//   CHECK_RETURN(o_name != nullptr, E_POINTER);         a false condition or a null pointer returns the code
//   CHECK_RETURN_GUARDED(p != nullptr, p->IsFile(), E_INVALIDARG);  the same for a condition that may be evaluated only
//                                                     when the guard holds; the log names the condition either way
//   CHECK_HRESULT(m_afs_inst->RegisterFileSys(this));   a failing code is returned
//   CHECK_THROW(!token.empty(), Exception(L"..."));     a false condition throws; the exception is made only then
//   CHECK_HRESULT_THROW(result);                        a failing code is thrown as an `HResultException`
//
// and how a COM method keeps its exceptions inside:
//
//   HRESULT STDMETHODCALLTYPE Thing::Do(IQorv_ErrorDetails* o_details) noexcept {
//       TRACE_FUNCTION();
//       COM_BOUNDARY(o_details) {
//           ...
//           return TRACE_RESULT(S_OK);
//       };
//   }

namespace Detail {

/// The truth of a condition. An HRESULT does not compile, because S_OK is 0.
template <typename Condition>
bool Holds(const Condition& i_condition) noexcept {
    static_assert(!std::is_same_v<Condition, HRESULT>, "check an HRESULT with CHECK_HRESULT");
    return static_cast<bool>(i_condition);
}

template <typename Result>
HRESULT CodeOf(Result i_result) noexcept {
    static_assert(std::is_same_v<Result, HRESULT>, "only an HRESULT can be checked so");
    return i_result;
}

/// Writes the exit line of a failed check. Never fails, keeps the last error.
void ReportReturn(FunctionTrace& io_trace, const wchar_t* i_expression, HRESULT i_code) noexcept;
/// The same for a failure that the function itself found. The caller finds it in the thread's COM error info.
void ReportRefusal(FunctionTrace& io_trace, const wchar_t* i_expression, HRESULT i_code) noexcept;
void ReportThrow(FunctionTrace& io_trace, const wchar_t* i_expression, const Exception& i_exception) noexcept;

/// Returns the code for the exception being handled. This is the one place where exceptions end: it logs the exception
/// and tells the caller what happened, through the thread's COM error info and the details object, if there is one.
HRESULT ReturnCurrentException(FunctionTrace& io_trace, Qorv::IQorv_ErrorDetails* o_details) noexcept;

/// Passes on the code of a method that ends without an exception. After a success, clears the thread's COM error info
/// of any earlier failure. After a failure that has only a code, puts the code's words there and in the details.
HRESULT ReturnCode(HRESULT i_code, Qorv::IQorv_ErrorDetails* o_details) noexcept;

/// Runs the body of a COM method.
class Boundary {
public:
    Boundary(FunctionTrace& io_trace, Qorv::IQorv_ErrorDetails* o_details) noexcept
        : m_trace(io_trace), m_details(o_details) {
        SetErrorInfo(0, nullptr); // Anything that an earlier call left there is not about this one.
    }

    template <typename Body>
    HRESULT operator%(Body&& i_body) const noexcept {
        try {
            return ReturnCode(i_body(), m_details);
        } catch (...) {
            return ReturnCurrentException(m_trace, m_details);
        }
    }

private:
    FunctionTrace& m_trace;
    Qorv::IQorv_ErrorDetails* m_details;
};

} // namespace Detail

#define CHECK_RETURN(condition, code)                                                                                  \
    do {                                                                                                               \
        if (!::Detail::Holds(condition)) [[unlikely]] {                                                                \
            const HRESULT check_code = (code);                                                                         \
            ::Detail::ReportRefusal(trace_function, L"" #condition, check_code);                                       \
            return check_code;                                                                                         \
        }                                                                                                              \
    } while (false)

#define CHECK_RETURN_GUARDED(guard, condition, code)                                                                   \
    do {                                                                                                               \
        if (!(::Detail::Holds(guard) && ::Detail::Holds(condition))) [[unlikely]] {                                    \
            const HRESULT check_code = (code);                                                                         \
            ::Detail::ReportRefusal(trace_function, L"" #condition, check_code);                                       \
            return check_code;                                                                                         \
        }                                                                                                              \
    } while (false)

#define CHECK_HRESULT(...)                                                                                             \
    do {                                                                                                               \
        if (const HRESULT check_code = ::Detail::CodeOf(__VA_ARGS__); FAILED(check_code)) [[unlikely]] {               \
            ::Detail::ReportReturn(trace_function, L"" #__VA_ARGS__, check_code);                                      \
            return check_code;                                                                                         \
        }                                                                                                              \
    } while (false)

#define CHECK_THROW(condition, exception)                                                                              \
    do {                                                                                                               \
        if (!::Detail::Holds(condition)) [[unlikely]] {                                                                \
            const auto check_exception = exception;                                                                    \
            ::Detail::ReportThrow(trace_function, L"" #condition, check_exception);                                    \
            throw check_exception;                                                                                     \
        }                                                                                                              \
    } while (false)

#define CHECK_HRESULT_THROW(...)                                                                                       \
    do {                                                                                                               \
        if (const HRESULT check_code = ::Detail::CodeOf(__VA_ARGS__); FAILED(check_code)) [[unlikely]] {               \
            const HResultException check_exception(check_code);                                                        \
            ::Detail::ReportThrow(trace_function, L"" #__VA_ARGS__, check_exception);                                  \
            throw check_exception;                                                                                     \
        }                                                                                                              \
    } while (false)

/// The rest of a COM method: a block, ending in a semicolon, that returns the method's code and may throw.
#define COM_BOUNDARY(details) return ::Detail::Boundary(trace_function, details) % [&]() -> HRESULT
