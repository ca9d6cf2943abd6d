#include "ui/dialog/FailureText.h"

#include "core/host/LocalizedText.h"
#include "core/trace/ErrorText.h"
#include "core/trace/Trace.h"

#include <string_view>

namespace Ui {
namespace {

constexpr std::wstring_view unauthorized = L"HTTP 401";

struct Kind {
    std::wstring_view words; ///< Of the reason: a status, or a part of what the service calls the failure.
    Qorv::PCStr text_id;
    bool is_clear = false; ///< The text says it all: the service's own words would only confuse.
};

constexpr Kind kinds[] = {
    {unauthorized, L"db.fail.signIn", true},
    {L"HTTP 429", L"db.fail.tooMany"},
    {L"HTTP 5", L"db.fail.service"},
    {L"not_found", L"db.fail.notFound", true},
    {L"conflict", L"db.fail.exists", true},
    {L"insufficient_space", L"db.fail.noSpace", true},
    {L"no_write_permission", L"db.fail.notAllowed", true},
    {L"disallowed_name", L"db.fail.badName", true},
    {L"malformed_path", L"db.fail.badName", true},
    {L"payload_too_large", L"db.fail.tooLarge", true},
    {L"HTTP 413", L"db.fail.tooLarge", true},
};

bool IsOfConnection(HRESULT i_code) noexcept {
    TRACE_FUNCTION();
    const auto error = static_cast<DWORD>(HRESULT_CODE(i_code));
    return HRESULT_FACILITY(i_code) == FACILITY_WIN32 && error >= INTERNET_ERROR_BASE && error <= INTERNET_ERROR_LAST;
}

Kind KindOf(const Failure& i_failure) noexcept {
    TRACE_FUNCTION();
    for (const Kind& kind : kinds)
        if (i_failure.reason.find(kind.words) != std::wstring::npos)
            return kind;
    if (IsOfConnection(i_failure.code))
        return {{}, L"db.fail.connection"};
    // What the provider answers for a name that stands for nothing.
    return i_failure.code == E_INVALIDARG ? Kind{{}, L"db.fail.notFound", true} : Kind{{}, L"db.fail.other"};
}

std::wstring OneParagraph(std::wstring i_text) {
    TRACE_FUNCTION();
    while (!i_text.empty() && i_text.back() <= L' ')
        i_text.pop_back();
    return i_text;
}

} // namespace

bool IsSignInNeeded(const Failure& i_failure) noexcept {
    TRACE_FUNCTION();
    return i_failure.reason.find(unauthorized) != std::wstring::npos;
}

std::wstring FailureText(Qorv::IQorv_Inst* i_host_instance, const Failure& i_failure) {
    TRACE_FUNCTION();
    const Kind kind = KindOf(i_failure);
    const std::wstring words = FormatString(i_host_instance, kind.text_id);
    if (kind.is_clear)
        return words;
    const std::wstring detail =
        i_failure.reason.empty() ? HResultText(i_failure.code, user_language) : i_failure.reason;
    return words + L"\n(" + OneParagraph(detail) + L")";
}

} // namespace Ui
