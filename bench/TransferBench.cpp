#include "BareService.h"
#include "Benchmarks.h"
#include "LoadedModule.h"
#include "Measure.h"
#include "support/Content.h"
#include "support/DevService.h"

#include <algorithm>
#include <stdexcept>

namespace Bench {
namespace {

using DevHost::Check;

// Used by all: as large as the pieces of the host's files cache.
constexpr double mebibyte = 1024.0 * 1024.0;
constexpr double quick_share = 8;
constexpr Figure::Aim transfer_aim{true, 0.97};
constexpr HRESULT end_of_data = HRESULT_FROM_WIN32(ERROR_HANDLE_EOF);

constexpr wchar_t download_path[] = L"/download.bin";
constexpr wchar_t upload_path[] = L"/upload.bin";
constexpr ULONG read_flags = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_OpenExisting;
constexpr ULONG write_flags = Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_OpenExisting;

void RequireSize(std::uint64_t i_actual, std::uint64_t i_expected) {
    if (i_actual != i_expected)
        throw std::runtime_error("a transfer had " + std::to_string(i_actual) + " bytes and not " +
                                 std::to_string(i_expected));
}

/// The module's own part: the callback from opening the file, driven as a cache does, but without a cache.
void DownloadByCallback(const LoadedModule& i_module, std::uint64_t i_size, std::vector<char>& io_buffer) {
    const auto file = i_module.Open(download_path, read_flags);
    const auto callback = i_module.TakeCallback();
    std::uint64_t total = 0;
    for (;;) {
        ULONG size = 0;
        const HRESULT result =
            callback->Read(total, io_buffer.data(), static_cast<ULONG>(io_buffer.size()), &size, nullptr, nullptr);
        if (result == end_of_data)
            break;
        Check(result, L"Read");
        total += size;
    }
    RequireSize(total, i_size);
    Check(file->Close(nullptr, nullptr), L"Close");
}

void UploadByCallback(const LoadedModule& i_module, std::uint64_t i_size, const std::vector<char>& i_buffer) {
    const auto file = i_module.Open(upload_path, write_flags);
    const auto callback = i_module.TakeCallback();
    Check(callback->SetSize(i_size, nullptr, nullptr), L"SetSize");
    Check(callback->BeginWrite(nullptr, nullptr), L"BeginWrite");
    for (std::uint64_t position = 0; position < i_size;) {
        const auto size = static_cast<ULONG>(std::min<std::uint64_t>(i_size - position, i_buffer.size()));
        ULONG written = 0;
        Check(callback->Write(position, i_buffer.data(), size, &written, nullptr, nullptr), L"Write");
        position += written;
    }
    Check(callback->EndWrite(nullptr, nullptr), L"EndWrite");
    Check(file->Close(nullptr, nullptr), L"Close");
}

/// A document's full path: the host's cache writes the bytes to its entry's file and reads them back.
void DownloadByCache(const LoadedModule& i_module, std::uint64_t i_size, std::vector<char>& io_buffer) {
    const auto file = i_module.Open(download_path, read_flags);
    std::uint64_t total = 0;
    ULONG size = 0;
    do {
        Check(file->Read(io_buffer.data(), static_cast<ULONG>(io_buffer.size()), &size, nullptr, nullptr), L"Read");
        total += size;
    } while (size != 0);
    RequireSize(total, i_size);
    Check(file->Close(nullptr, nullptr), L"Close");
}

void UploadByCache(const LoadedModule& i_module, std::uint64_t i_size, const std::vector<char>& i_buffer) {
    const auto file = i_module.Open(upload_path, Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_CreateAlways);
    for (std::uint64_t position = 0; position < i_size;) {
        const auto size = static_cast<ULONG>(std::min<std::uint64_t>(i_size - position, i_buffer.size()));
        ULONG written = 0;
        Check(file->Write(i_buffer.data(), size, &written, nullptr, nullptr), L"Write");
        position += written;
    }
    Check(file->Close(nullptr, nullptr), L"Close");
}

/// Adds the speed of each of three kinds, and how it compares with the first.
void AddSpeeds(Report& io_report, const std::string& i_name, std::uint64_t i_size, const Contest& i_contest) {
    const double size = static_cast<double>(i_size) / mebibyte;
    const auto add = [&](const char* i_way, std::size_t i_kind, std::optional<Figure::Aim> i_aim) {
        // Speeds are the inverse of times, hence the reference comes second.
        io_report.Add({i_name + " " + std::to_string(static_cast<int>(size)) + " MiB, " + i_way,
                       size / i_contest.Wall(i_kind), "MiB/s", size / i_contest.Wall(0), i_contest.WallRatio(0, i_kind),
                       i_contest.CpuRatio(i_kind, 0), i_aim});
    };
    add("callback", 1, transfer_aim);
    add("files cache", 2, std::nullopt);
}

} // namespace

void MeasureTransfers(Report& io_report, const Effort& i_effort) {
    const BareService bare;
    LoadedModule module;
    module.BindAccount();
    const std::string bytes = Tests::RandomBytes(buffer_size);
    std::vector<char> buffer(bytes.begin(), bytes.end());
    auto size = std::filesystem::file_size(Tests::Service::LocalPath(download_path));
    if (i_effort.is_quick) {
        size = static_cast<std::uint64_t>(static_cast<double>(size) / quick_share);
        std::filesystem::resize_file(Tests::Service::LocalPath(download_path), size);
    }
    bare.Upload(upload_path, 1, buffer); // A process's first connection costs more than later ones.
    const Contest downloads(i_effort.rounds, {
                                                 [&] { RequireSize(bare.Download(download_path, buffer), size); },
                                                 [&] { DownloadByCallback(module, size, buffer); },
                                                 [&] { DownloadByCache(module, size, buffer); },
                                             });
    AddSpeeds(io_report, "download", size, downloads);
    const Contest uploads(i_effort.rounds, {
                                               [&] { bare.Upload(upload_path, size, buffer); },
                                               [&] { UploadByCallback(module, size, buffer); },
                                               [&] { UploadByCache(module, size, buffer); },
                                           });
    AddSpeeds(io_report, "upload", size, uploads);
}

} // namespace Bench
