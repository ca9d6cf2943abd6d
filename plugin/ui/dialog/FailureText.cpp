#include "ui/dialog/FailureText.h"

#include "core/host/LocalizedText.h"
#include "core/trace/ErrorText.h"
#include "core/trace/Trace.h"

#include <wininet.h>

#include <string_view>
#include <utility>

namespace Ui {
namespace {

constexpr DWORD status_too_many_requests = 429;
constexpr DWORD status_network_sign_in = 511; ///< Of a network that wants a sign-in on a page of its own.
constexpr std::size_t longest_detail = 300;   ///< Of what the service or the system says, which may be a whole page.

/// A failure that the service reported, known by its status or by a tag in its summary.
struct Kind {
    std::wstring_view tag; ///< Empty when the status decides.
    Qorv::PCStr text_id;
    DWORD status = 0;
    bool is_clear = false; ///< The text says it all; the service's own words would only confuse.
};

constexpr Kind kinds[] = {
    {{}, L"db.fail.signIn", HTTP_STATUS_DENIED, true},
    {{}, L"db.fail.tooMany", status_too_many_requests},
    {{}, L"db.fail.proxy", HTTP_STATUS_PROXY_AUTH_REQ},
    {{}, L"db.fail.page", status_network_sign_in, true},
    {{}, L"db.fail.notAllowed", HTTP_STATUS_FORBIDDEN, true},
    {L"html_page", L"db.fail.page", 0, true},
    {L"not_found", L"db.fail.notFound", 0, true},
    {L"conflict", L"db.fail.exists", 0, true},
    {L"insufficient_space", L"db.fail.noSpace", 0, true},
    {L"no_write_permission", L"db.fail.notAllowed", 0, true},
    {L"no_permission", L"db.fail.notAllowed", 0, true},
    {L"disallowed_name", L"db.fail.badName", 0, true},
    {L"malformed_path", L"db.fail.badName", 0, true},
    {L"payload_too_large", L"db.fail.tooLarge", 0, true},
    {{}, L"db.fail.tooLarge", HTTP_STATUS_REQUEST_TOO_LARGE, true},
};

bool IsOf(const Kind& i_kind, const FailureReason& i_reason) noexcept {
    TRACE_FUNCTION();
    return i_kind.tag.empty() ? i_reason.http_status == i_kind.status
                              : i_reason.summary.find(i_kind.tag) != std::wstring::npos;
}

bool IsOfConnection(HRESULT i_code) noexcept {
    TRACE_FUNCTION();
    const auto error = static_cast<DWORD>(HRESULT_CODE(i_code));
    return HRESULT_FACILITY(i_code) == FACILITY_WIN32 && error >= INTERNET_ERROR_BASE && error <= INTERNET_ERROR_LAST;
}

/// The text for a connection that failed, by the platform's error.
Qorv::PCStr TextOfConnection(HRESULT i_code) noexcept {
    TRACE_FUNCTION();
    switch (HRESULT_CODE(i_code)) {
    case ERROR_INTERNET_SEC_CERT_DATE_INVALID:
    case ERROR_INTERNET_SEC_CERT_CN_INVALID:
    case ERROR_INTERNET_INVALID_CA:
    case ERROR_INTERNET_SEC_CERT_ERRORS:
    case ERROR_INTERNET_SEC_CERT_NO_REV:
    case ERROR_INTERNET_SEC_CERT_REV_FAILED:
    case ERROR_INTERNET_SEC_INVALID_CERT:
    case ERROR_INTERNET_SEC_CERT_REVOKED:
        return L"db.fail.certificate";
    case ERROR_INTERNET_NAME_NOT_RESOLVED:
    case ERROR_INTERNET_DISCONNECTED:
        return L"db.fail.offline";
    default:
        return L"db.fail.connection";
    }
}

Kind KindOf(const Failure& i_failure) noexcept {
    TRACE_FUNCTION();
    for (const Kind& kind : kinds)
        if (IsOf(kind, i_failure.reason))
            return kind;
    if (i_failure.reason.http_status >= HTTP_STATUS_SERVER_ERROR)
        return {{}, L"db.fail.service"};
    if (IsOfConnection(i_failure.code))
        return {{}, TextOfConnection(i_failure.code)};
    // The provider's code for a name whose object does not exist.
    return i_failure.code == E_INVALIDARG ? Kind{{}, L"db.fail.notFound", 0, true} : Kind{{}, L"db.fail.other"};
}

bool IsControl(wchar_t i_character) noexcept {
    TRACE_FUNCTION();
    return i_character < L' ' || (i_character >= 0x7F && i_character <= 0x9F) || i_character == 0x2028 ||
           i_character == 0x2029;
}

/// The marks that change the direction of the text around them, which could make a message look like another one.
bool IsDirectionMark(wchar_t i_character) noexcept {
    TRACE_FUNCTION();
    return i_character == 0x061C || i_character == 0x200E || i_character == 0x200F ||
           (i_character >= 0x202A && i_character <= 0x202E) || (i_character >= 0x2066 && i_character <= 0x2069);
}

/// Other people's text as one short paragraph that is safe to show.
std::wstring OneParagraph(std::wstring_view i_text) {
    TRACE_FUNCTION();
    std::wstring paragraph;
    bool is_blank_due = false;
    for (const wchar_t character : i_text) {
        if (paragraph.size() > longest_detail)
            break;
        if (character == L' ' || IsControl(character)) {
            is_blank_due = !paragraph.empty();
        } else if (!IsDirectionMark(character)) {
            paragraph.append(std::exchange(is_blank_due, false) ? 1 : 0, L' ');
            paragraph += character;
        }
    }
    if (paragraph.size() <= longest_detail)
        return paragraph;
    paragraph.resize(longest_detail - 1);
    if (IS_HIGH_SURROGATE(paragraph.back()))
        paragraph.pop_back(); // Half a character shows as a box.
    return paragraph + L'\u2026';
}

} // namespace

bool IsSignInNeeded(const Failure& i_failure) noexcept {
    TRACE_FUNCTION();
    return i_failure.reason.http_status == HTTP_STATUS_DENIED;
}

bool MayHaveSucceeded(const Failure& i_failure) noexcept {
    TRACE_FUNCTION();
    if (!IsOfConnection(i_failure.code))
        return false;
    const int error = HRESULT_CODE(i_failure.code);
    return error == ERROR_INTERNET_TIMEOUT || error == ERROR_INTERNET_CONNECTION_ABORTED ||
           error == ERROR_INTERNET_CONNECTION_RESET || error == ERROR_HTTP_INVALID_SERVER_RESPONSE;
}

std::wstring FailureText(Qorv::IQorv_Inst* i_host_instance, const Failure& i_failure) {
    TRACE_FUNCTION();
    const Kind kind = KindOf(i_failure);
    const std::wstring words = FormatString(i_host_instance, kind.text_id);
    if (kind.is_clear)
        return words;
    const std::wstring detail =
        i_failure.reason.words.empty() ? HResultText(i_failure.code, user_language) : i_failure.reason.words;
    return words + L"\n(" + OneParagraph(detail) + L")";
}

} // namespace Ui
