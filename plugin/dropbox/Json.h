#pragma once

#include "core/trace/Exceptions.h"
#include "http/Response.h"

#include <cstddef>
#include <memory>
#include <string>

namespace Dropbox::Utility {

/// A reply that is not what the service promises. The message, for the log, says what is wrong with it; a person is
/// told what the answer was for.
class ReplyException : public Exception {
public:
    /// `i_purpose` continues "The service's answer", as in "about the account".
    /// `i_summary` is the reason's (see `html_page`).
    explicit ReplyException(std::wstring i_message, const std::wstring& i_purpose = {}, std::wstring i_summary = {});
};

/// The summary of the reason when a page for people came in place of an answer: it isn't the service's.
inline constexpr wchar_t html_page[] = L"html_page";

/// Reads a reply; if that fails, adds what the reply was for.
template <typename Read>
auto ReadFor(const wchar_t* i_purpose, Read&& i_read) {
    try {
        return i_read();
    } catch (const ReplyException& e) {
        throw ReplyException(e.Message(), i_purpose, e.Reason().summary);
    }
}

/// Throws a `ReplyException` with the text of an assertion of the JSON library: a reply that is not what the service
/// promises, such as a number where a text should be.
[[noreturn]] void ThrowJsonAssertion(const wchar_t* i_assertion);

} // namespace Dropbox::Utility

#define RAPIDJSON_ASSERT(condition)                                                                                    \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            ::Dropbox::Utility::ThrowJsonAssertion(L"" #condition);                                                    \
    } while (false)
#include <rapidjson/document.h>

namespace Dropbox::Utility {

using JsonEncoding = rapidjson::UTF16<wchar_t>;
using JsonValue = rapidjson::GenericValue<JsonEncoding, rapidjson::MemoryPoolAllocator<>>;

/// A parsed JSON text in UTF-16.
class JsonDocument : public rapidjson::GenericDocument<JsonEncoding, rapidjson::MemoryPoolAllocator<>> {
public:
    /// Parses without recursion, so deep nesting is harmless.
    void ParseText(std::wstring i_text);

    bool HasParseError() const noexcept { return m_error_text != nullptr; }
    /// What is wrong; null if nothing is.
    const wchar_t* ParseErrorText() const noexcept { return m_error_text; }
    /// Where, in characters from the text's start.
    std::size_t ErrorOffset() const noexcept { return m_error_offset; }
    /// Whether the text looks like a page for people.
    bool IsHtml() const noexcept { return m_is_html; }

private:
    /// The parsed text. The values refer to it instead of copying, because listings are long. It stays in place when
    /// the document is moved.
    std::unique_ptr<std::wstring> m_text;
    const wchar_t* m_error_text = nullptr;
    std::size_t m_error_offset = 0;
    bool m_is_html = false;
};

/// Fills the document from a reply's body. Throws a `ReplyException` for text that is not JSON.
void ParseJson(JsonDocument& document, Http::Response& response);

/// A member that must be there. Throws a `ReplyException` when it is not.
const JsonValue& Member(const JsonValue& i_object, const wchar_t* i_name);

/// The text of a value that must be a string.
std::wstring Text(const JsonValue& i_value);

} // namespace Dropbox::Utility
