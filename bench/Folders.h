#pragma once

#include "Benchmarks.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Bench {

// The folders that `bench.sh` makes in the account, each with as many files as its name says.

inline constexpr std::size_t largest_folder = 100'000;

inline std::vector<std::size_t> FolderSizes(const Effort& i_effort) {
    if (i_effort.is_quick)
        return {10, 1'000, 10'000};
    return {10, 1'000, 10'000, largest_folder};
}

inline std::wstring FolderOf(std::size_t i_entries) {
    return L"/" + std::to_wstring(i_entries);
}

/// The number as people write it.
inline std::string SizeText(std::size_t i_entries) {
    return i_entries < 1000 ? std::to_string(i_entries) : std::to_string(i_entries / 1000) + ",000";
}

} // namespace Bench
