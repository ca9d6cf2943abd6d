#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <set>

#include "FaultPlan.h"
#include "HostProcess.h"

namespace Storm {

struct StormOptions {
    std::chrono::seconds time{60};
    std::uint64_t seed = 1;
    std::uint64_t first_batch = 1; ///< a batch is the same for the same seed, whatever came before
    std::set<FaultKind> without;   ///< faults to leave out, to see what else there is
    std::filesystem::path folder;  ///< for everything that the storm writes
    Programs programs;

    /// @throws std::invalid_argument with a sentence for the user
    static StormOptions Parse(int i_count, char** i_arguments);
};

} // namespace Storm
