#pragma once

#include <string>
#include <string_view>

namespace Http {

/// What somebody else's words come to when a person is to read them: one line of at most 300 characters, without
/// control characters and without those that turn the direction of text.
std::wstring PlainWords(std::wstring_view i_words);

/// The text of the member "error_summary" of a JSON text, empty when there is none.
std::wstring ErrorSummary(std::wstring_view i_json);

} // namespace Http
