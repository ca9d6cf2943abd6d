#include "Benchmarks.h"
#include "ChildProcess.h"
#include "LoadedModule.h"
#include "Measure.h"

namespace Bench {
namespace {

constexpr int rounds_per_round = 3; // A single one is too fast to measure.
constexpr Figure::Aim load_aim{false, 3};

} // namespace

void MeasureLoading(Report& io_report, const Effort& i_effort) {
    std::vector<double> module;
    std::vector<double> library;
    std::vector<double> host;
    for (int round = 0; round < rounds_per_round * i_effort.rounds; ++round) {
        const std::vector<double> times = RunChild(L"load");
        const double decoding = times.at(2);
        module.push_back(times.at(0) - decoding);
        library.push_back(times.at(1));
        host.push_back(decoding);
    }
    io_report.Add({"module load to Init", Median(module), "ms", {}, {}, {}, load_aim});
    io_report.Add({"of this, loading the file", Median(library), "ms", {}, {}, {}, {}});
    io_report.Add({"besides, the host decoding its icon", Median(host), "ms", {}, {}, {}, {}});
}

std::vector<double> LoadInChild() {
    const LoadedModule module;
    return {module.LoadTime(), module.LibraryTime(), module.DecodingTime()};
}

} // namespace Bench
