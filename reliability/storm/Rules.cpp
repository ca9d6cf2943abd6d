#include "Rules.h"

#include <algorithm>
#include <string_view>

#include "Encoding.h"

namespace Storm {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "qorvhost: ";
constexpr std::string_view code_words = " (HRESULT 0x";

bool IsFailureLine(const std::string& i_line) {
    return i_line.find(code_words) != i_line.npos;
}

void Require(bool i_holds, const std::string& i_rule, const Answer& i_answer) {
    if (!i_holds)
        throw RuleBroken(i_rule + ":\n" + i_answer.Text());
}

bool IsReadable(const std::string& i_line) {
    constexpr unsigned char first_printable = ' ';
    return DevService::IsUtf8(i_line) &&
           std::ranges::all_of(i_line, [](char i_c) { return static_cast<unsigned char>(i_c) >= first_printable; });
}

} // namespace

void CheckAnswer(const Answer& i_answer, const std::string& i_token) {
    constexpr std::size_t longest_line = 1'000;
    const auto failures = std::ranges::count_if(i_answer.notes, IsFailureLine);
    const bool says_error = i_answer.json.starts_with(R"({"error")");
    Require(i_answer.exit_code == 0 || i_answer.exit_code == 1, "an exit code is 0 or 1", i_answer);
    Require(i_answer.exit_code == (failures > 0 ? 1 : 0), "the exit code is not what the lines say", i_answer);
    Require(i_answer.exit_code == (says_error ? 1 : 0), "the exit code is not what the JSON says", i_answer);
    Require(failures <= 1, "a failure is one line", i_answer);
    for (const std::string& line : i_answer.notes) {
        Require(line.starts_with(prefix) && IsReadable(line), "a line can be read", i_answer);
        Require(DevService::Utf16Length(line) <= longest_line, "a line has at most 1,000 characters", i_answer);
        Require(line.find(i_token) == line.npos, "a line holds no token", i_answer);
    }
    Require(i_answer.json.find(i_token) == i_answer.json.npos, "the JSON holds no token", i_answer);
}

std::string FailureLine(const Answer& i_answer) {
    const auto line = std::ranges::find_if(i_answer.notes, IsFailureLine);
    return line == i_answer.notes.end() ? std::string() : line->substr(prefix.size());
}

fs::path PathBehind(const std::string& i_line, std::string_view i_words) {
    const std::size_t words = i_line.find(i_words);
    if (words == i_line.npos)
        return {};
    std::string path = i_line.substr(words + i_words.size());
    path.resize(std::min(path.find(code_words), path.size()));
    // More sentences may follow, and a file's name may contain a full stop and a space.
    while (!fs::is_regular_file(NativePath(path)) && path.find(". ") != path.npos)
        path.resize(path.rfind(". "));
    return NativePath(path);
}

} // namespace Storm
