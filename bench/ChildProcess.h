#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Bench {

/// The argument that makes this program a child: "--child JOB [ARGUMENT]".
inline constexpr std::string_view child_option = "--child";

/// Runs a job in a fresh process of this program and returns the numbers that it printed. Throws std::runtime_error if
/// it fails.
std::vector<double> RunChild(const std::wstring& i_job, const std::wstring& i_argument = {});

/// The child's side: prints the numbers.
void AnswerParent(const std::vector<double>& i_numbers);

} // namespace Bench
