#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <vector>

namespace Bench {

// In a second.
inline constexpr double milliseconds = 1e3;
inline constexpr double microseconds = 1e6;

/// Bytes moved at a time.
inline constexpr std::size_t buffer_size = std::size_t{64} * 1024;

/// The cost of a piece of work.
struct Cost {
    double wall = 0; ///< Seconds.
    double cpu = 0;  ///< Seconds of this process, user and kernel, all threads; measured in steps of 10 ms.
};

/// Runs the work once.
Cost Measure(const std::function<void()>& i_work);

/// The list must not be empty.
double Median(std::vector<double> i_values);

/// The medians of `i_rounds` runs of each kind of work. The kinds take turns, in one order and then in the other, so
/// that a slow minute of the machine hits all of them.
class Contest {
public:
    Contest(int i_rounds, const std::vector<std::function<void()>>& i_kinds);

    double Wall(std::size_t i_kind) const;
    double Cpu(std::size_t i_kind) const;
    /// The median of the ratios within each round.
    double WallRatio(std::size_t i_kind, std::size_t i_reference) const;
    double CpuRatio(std::size_t i_kind, std::size_t i_reference) const;

private:
    std::vector<std::vector<Cost>> m_rounds; ///< By round, then by kind.
};

} // namespace Bench
