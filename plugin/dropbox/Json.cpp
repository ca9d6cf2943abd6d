#include "dropbox/Json.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "http/ResponseBody.h"

#include <algorithm>
#include <cwctype>

namespace Dropbox::Utility {

namespace {

constexpr wchar_t white_space[] = L" \t\r\n";

/// The texts for the library's codes. They come from an earlier version of it, which distinguished some cases that
/// share a code today: `i_at` is the text from the error on, `i_before` the character before it.
const wchar_t* ErrorText(rapidjson::ParseErrorCode i_code, std::wstring_view i_at, wchar_t i_before) {
    TRACE_FUNCTION();
    constexpr std::size_t escape_size = 6; // "\uD83D"
    switch (i_code) {
    case rapidjson::kParseErrorDocumentEmpty:
        return L"Text only contains white space(s)";
    case rapidjson::kParseErrorDocumentRootNotSingular:
        return L"Nothing should follow the root object or array.";
    case rapidjson::kParseErrorObjectMissName:
        return L"Name of an object member must be a string";
    case rapidjson::kParseErrorObjectMissColon:
        return L"There must be a colon after the name of object member";
    case rapidjson::kParseErrorObjectMissCommaOrCurlyBracket:
        return L"Must be a comma or '}' after an object member";
    case rapidjson::kParseErrorArrayMissCommaOrSquareBracket:
        return L"Must be a comma or ']' after an array element.";
    case rapidjson::kParseErrorStringUnicodeEscapeInvalidHex:
        return L"Incorrect hex digit after \\u escape";
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return i_at.substr(std::min(escape_size, i_at.size())).starts_with(L"\\u")
                   ? L"The second \\u in surrogate pair is invalid"
                   : L"Missing the second \\u in surrogate pair";
    case rapidjson::kParseErrorStringEscapeInvalid:
        return i_at.starts_with(L'\\') ? L"Unknown escape character" : L"Incorrect unescaped character in string";
    case rapidjson::kParseErrorStringInvalidEncoding:
        return L"Incorrect unescaped character in string";
    case rapidjson::kParseErrorStringMissQuotationMark:
        return L"lacks ending quotation before the end of string";
    case rapidjson::kParseErrorNumberTooBig:
        return L"Number too big to store in double";
    case rapidjson::kParseErrorNumberMissFraction:
        return L"At least one digit in fraction part";
    case rapidjson::kParseErrorNumberMissExponent:
        return L"At least one digit in exponent";
    default: // A misspelled true, false or null, or no value at all.
        return std::iswalpha(i_before) ? L"Invalid value" : L"Expect a value here.";
    }
}

/// The reply's bytes are freed before parsing: listings are long, and three copies of one would be too many.
std::wstring ReadText(Http::Response& response) {
    TRACE_FUNCTION();
    std::string body;
    Http::AppendBody(response, body);
    return FromUtf8(body);
}

} // namespace

ReplyException::ReplyException(std::wstring i_message, const std::wstring& i_purpose, std::wstring i_summary)
    : Exception(std::move(i_message), {.words = L"The service's answer " + i_purpose +
                                                (i_purpose.empty() ? L"" : L" ") + L"cannot be understood",
                                       .summary = std::move(i_summary)}) {}

void ThrowJsonAssertion(const wchar_t* i_assertion) {
    TRACE_FUNCTION();
    const ReplyException exception(i_assertion);
    Detail::ReportThrow(trace_function, i_assertion, exception);
    throw exception;
}

void JsonDocument::ParseText(std::wstring i_text) {
    TRACE_FUNCTION();
    m_text = std::make_unique<std::wstring>(std::move(i_text));
    const std::wstring_view text = *m_text;
    // The library accepts any value as a document; the service's documents are objects or arrays.
    const std::size_t root = text.find_first_not_of(white_space);
    m_is_html = root != std::wstring_view::npos && text[root] == L'<';
    if (root != std::wstring_view::npos && text[root] != L'{' && text[root] != L'[') {
        m_error_text = L"Expect either an object or array at root";
        m_error_offset = root;
        return;
    }
    ParseInsitu<rapidjson::kParseIterativeFlag>(m_text->data());
    if (!GenericDocument::HasParseError())
        return;
    m_error_offset = GetErrorOffset();
    const std::size_t at = std::min(m_error_offset, text.size()); // From here on, the text is unchanged.
    m_error_text = ErrorText(GetParseError(), text.substr(at), at > 0 ? text[at - 1] : L'\0');
}

void ParseJson(JsonDocument& document, Http::Response& response) {
    TRACE_FUNCTION();
    JsonDocument& json = document;
    json.ParseText(ReadText(response));
    // It says line but means the character: kept, because tools that read the log expect it.
    CHECK_THROW(!json.HasParseError(),
                ReplyException(std::wstring(L"JSON document parse error: ") + json.ParseErrorText() + L"\nJSON line: " +
                                   std::to_wstring(json.ErrorOffset()),
                               {}, json.IsHtml() ? html_page : L""));
}

const JsonValue& Member(const JsonValue& i_object, const wchar_t* i_name) {
    TRACE_FUNCTION();
    const auto member = i_object.FindMember(i_name);
    CHECK_THROW(member != i_object.MemberEnd(),
                ReplyException(std::wstring(L"The service's reply has no \"") + i_name + L"\""));
    return member->value;
}

std::wstring Text(const JsonValue& i_value) {
    TRACE_FUNCTION();
    return {i_value.GetString(), i_value.GetStringLength()};
}

} // namespace Dropbox::Utility
