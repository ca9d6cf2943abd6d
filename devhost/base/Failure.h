#pragma once

#include "qorv/Base.h"
#include "qorv/Host.h"

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace DevHost {

/// What went wrong in the host: a code for its callers and a sentence for its user.
class Failure : public std::runtime_error {
public:
    Failure(HRESULT i_code, std::wstring i_text);

    HRESULT Code() const noexcept { return m_code; }
    const std::wstring& Text() const noexcept { return m_text; }

private:
    HRESULT m_code;
    std::wstring m_text;
};

/// A failure of the operating system: "<what was tried>: <the system's reason>". Reads the last error.
Failure LastErrorFailure(std::wstring_view i_what);

/// A code in words, without a full stop: our text for the codes that plug-ins return, else the system's text.
std::wstring CodeInWords(HRESULT i_code);

/// The reason that a failed operation gave, in one line, or the code in words when it gave none that helps the user.
std::wstring ReasonInWords(HRESULT i_code, std::wstring_view i_said);

/// Throws when a call of the platform failed.
void Check(HRESULT i_result, std::wstring_view i_what);

/// Runs the body of a COM method of the host. An exception becomes the method's result and, if the caller passed a
/// details object, the reason in it. The body returns an HRESULT, or nothing for S_OK.
template <typename Body>
HRESULT Answer(Qorv::IQorv_ErrorDetails* o_details, Body&& i_body) noexcept {
    try {
        if constexpr (std::is_void_v<decltype(i_body())>) {
            i_body();
            return S_OK;
        } else {
            return i_body();
        }
    } catch (const Failure& failure) {
        if (o_details != nullptr)
            o_details->SetError(failure.Code(), failure.Text().c_str());
        return failure.Code();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

template <typename Body>
HRESULT Answer(Body&& i_body) noexcept {
    return Answer(nullptr, std::forward<Body>(i_body));
}

/// Implements a getter: returns a copy of a text.
HRESULT AnswerText(std::wstring_view i_text, BSTR* o_text) noexcept;

} // namespace DevHost
