#pragma once

#include <string>
#include <string_view>

namespace Http {

/// Somebody else's words, made fit to be shown to a person: one line of at most 300 characters, without control
/// characters and without characters that change the direction of text.
std::wstring PlainWords(std::wstring_view i_words);

/// The string member "error_summary" of a JSON text; empty if there is none.
std::wstring ErrorSummary(std::wstring_view i_json);

} // namespace Http
