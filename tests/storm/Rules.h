#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "HostProcess.h"

namespace Storm {

/// What holds for each answer: a true exit code; one clear line for a failure, of at most 1,000 characters; no token.
/// @throws RuleBroken
void CheckAnswer(const Answer& i_answer, const std::string& i_token);

/// The sentence of a failure, without "qorvhost: ". Empty when there is none.
std::string FailureLine(const Answer& i_answer);

/// The file behind these words, in that line; empty when the line has no such words.
std::filesystem::path PathBehind(const std::string& i_line, std::string_view i_words);

} // namespace Storm
