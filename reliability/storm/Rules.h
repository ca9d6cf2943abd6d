#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "HostProcess.h"

namespace Storm {

/// What every answer must satisfy: a correct exit code; one clear line for a failure, of at most 1,000 characters; no
/// token.
/// @throws RuleBroken
void CheckAnswer(const Answer& i_answer, const std::string& i_token);

/// The sentence of a failure, without "qorvhost: ". Empty if there is none.
std::string FailureLine(const Answer& i_answer);

/// The file named after these words in the line; empty if the line does not have the words.
std::filesystem::path PathBehind(const std::string& i_line, std::string_view i_words);

} // namespace Storm
