#include "BareService.h"
#include "Benchmarks.h"
#include "ChildProcess.h"
#include "Folders.h"
#include "LoadedModule.h"
#include "Measure.h"

#include <psapi.h>

#include <stdexcept>

namespace Bench {
namespace {

using DevHost::Check;

constexpr Figure::Aim time_aim{false, 1.25};
constexpr Figure::Aim memory_aim{false, 400};

/// A folder's name, already bound: listing it then takes exactly the requests that the bare reference sends.
Qorv::ComPtr<Qorv::IAFS_Name> BoundFolder(const LoadedModule& i_module, std::size_t i_entries) {
    auto name = i_module.NameOf(FolderOf(i_entries));
    Qorv::ComPtr<Qorv::IAFS_FileInfo> information;
    Check(i_module.FileSystem().GetFileInfo(name, nullptr, nullptr, &information), FolderOf(i_entries));
    return name;
}

void RequireEntries(std::size_t i_actual, std::size_t i_expected) {
    if (i_actual != i_expected)
        throw std::runtime_error("a listing had " + std::to_string(i_actual) + " entries and not " +
                                 std::to_string(i_expected));
}

std::size_t CountBare(const BareService& i_bare, const std::string& i_path, std::vector<char>& io_buffer) {
    constexpr std::string_view mark = "\"path_lower\":"; // Once in each entry.
    std::size_t count = 0;
    i_bare.FetchListing(i_path, io_buffer, [&](const std::string& i_page) {
        for (std::size_t at = i_page.find(mark); at != i_page.npos; at = i_page.find(mark, at + mark.size()))
            ++count;
    });
    return count;
}

/// Lists the folder and goes through all names, as a host does.
void List(const LoadedModule& i_module, Qorv::IAFS_Name* i_folder, std::size_t i_entries) {
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
    Check(i_module.FileSystem().EnumFolder(i_folder, nullptr, nullptr, &children), L"EnumFolder");
    std::size_t count = 0;
    Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> item;
    while (children->Next(&item) == S_OK) {
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        Check(item->get_Name(&name), L"get_Name");
        ++count;
    }
    RequireEntries(count, i_entries);
}

/// Small listings are repeated, so that one round takes long enough to be measured.
int Repetitions(std::size_t i_entries) {
    return i_entries < 1'000 ? 20 : i_entries < 10'000 ? 5 : 1;
}

PROCESS_MEMORY_COUNTERS MemoryOfThis() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return memory;
}

} // namespace

void MeasureListings(Report& io_report, const Effort& i_effort) {
    const BareService bare;
    LoadedModule module;
    module.BindAccount();
    std::vector<char> buffer(buffer_size);
    std::vector<double> entry_times;
    for (const std::size_t entries : FolderSizes(i_effort)) {
        const auto folder = BoundFolder(module, entries);
        const std::string path = "/" + std::to_string(entries);
        RequireEntries(CountBare(bare, path, buffer), entries); // The service's first look at a folder is slow.
        const int repetitions = Repetitions(entries);
        const auto repeat = [&](const std::function<void()>& i_work) {
            return [=] {
                for (int i = 0; i < repetitions; ++i)
                    i_work();
            };
        };
        const Contest contest(i_effort.rounds,
                              {repeat([&] { bare.FetchListing(path, buffer, [](const std::string&) {}); }),
                               repeat([&] { List(module, folder, entries); })});
        const double scale = milliseconds / repetitions;
        io_report.Add({"list " + SizeText(entries) + " entries", contest.Wall(1) * scale, "ms", contest.Wall(0) * scale,
                       contest.WallRatio(1, 0), contest.CpuRatio(1, 0),
                       entries == largest_folder ? std::optional(time_aim) : std::nullopt});
        entry_times.push_back(contest.Wall(1) * microseconds / repetitions / static_cast<double>(entries));
    }
    const double last = entry_times.back();
    const double before = entry_times[entry_times.size() - 2];
    io_report.Add({"time per entry, beside a tenth of them", last, "us", before, last / before, {}, {}});
}

void MeasureListingMemory(Report& io_report, const Effort& i_effort) {
    const std::size_t entries = FolderSizes(i_effort).back();
    const double bytes = RunChild(L"list", std::to_wstring(entries)).front();
    io_report.Add({"peak memory per entry, " + SizeText(entries),
                   bytes / static_cast<double>(entries),
                   "B",
                   {},
                   {},
                   {},
                   memory_aim});
}

std::vector<double> ListInChild(const std::wstring& i_folder) {
    const auto entries = static_cast<std::size_t>(std::stoull(i_folder));
    LoadedModule module;
    module.BindAccount();
    List(module, BoundFolder(module, 10), 10); // The connection and its TLS count as the idle module's.
    const auto folder = BoundFolder(module, entries);
    const auto idle = MemoryOfThis();
    List(module, folder, entries);
    return {static_cast<double>(MemoryOfThis().PeakWorkingSetSize) - static_cast<double>(idle.WorkingSetSize)};
}

} // namespace Bench
