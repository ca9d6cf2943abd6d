#include "Measure.h"

#include "qorv/Base.h"

#include <algorithm>
#include <chrono>

namespace Bench {
namespace {

double Seconds(const FILETIME& i_time) {
    return static_cast<double>(std::uint64_t{i_time.dwHighDateTime} << 32 | i_time.dwLowDateTime) / 1e7;
}

double CpuSeconds() {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    return Seconds(kernel) + Seconds(user);
}

template <typename Value>
double MedianOf(const std::vector<std::vector<Cost>>& i_rounds, Value&& i_value) {
    std::vector<double> values;
    values.reserve(i_rounds.size());
    for (const auto& round : i_rounds)
        values.push_back(i_value(round));
    return Median(std::move(values));
}

} // namespace

Cost Measure(const std::function<void()>& i_work) {
    const double cpu = CpuSeconds();
    const auto start = std::chrono::steady_clock::now();
    i_work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), CpuSeconds() - cpu};
}

double Median(std::vector<double> i_values) {
    std::ranges::sort(i_values);
    const std::size_t middle = i_values.size() / 2;
    return i_values.size() % 2 != 0 ? i_values[middle] : (i_values[middle - 1] + i_values[middle]) / 2;
}

Contest::Contest(int i_rounds, const std::vector<std::function<void()>>& i_kinds) {
    for (int number = 0; number < i_rounds; ++number) {
        auto& round = m_rounds.emplace_back(i_kinds.size());
        for (std::size_t turn = 0; turn < i_kinds.size(); ++turn) {
            const std::size_t kind = number % 2 == 0 ? turn : i_kinds.size() - 1 - turn;
            round[kind] = Measure(i_kinds[kind]);
        }
    }
}

double Contest::Wall(std::size_t i_kind) const {
    return MedianOf(m_rounds, [&](const auto& i_round) { return i_round[i_kind].wall; });
}

double Contest::Cpu(std::size_t i_kind) const {
    return MedianOf(m_rounds, [&](const auto& i_round) { return i_round[i_kind].cpu; });
}

double Contest::WallRatio(std::size_t i_kind, std::size_t i_reference) const {
    return MedianOf(m_rounds, [&](const auto& i_round) { return i_round[i_kind].wall / i_round[i_reference].wall; });
}

double Contest::CpuRatio(std::size_t i_kind, std::size_t i_reference) const {
    return Cpu(i_kind) / Cpu(i_reference);
}

} // namespace Bench
