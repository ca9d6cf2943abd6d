#include "Benchmarks.h"
#include "Measure.h"
#include "core/trace/Trace.h"
#include "support/Log.h"
#include "support/TemporaryFolder.h"

#include <cstdio>

namespace Bench {
namespace {

constexpr int calls_when_off = 50'000'000;
constexpr int calls_when_on = 10'000;
constexpr double nanoseconds = 1e9;
constexpr Figure::Aim off_aim{false, 2};

HRESULT Untraced() {
    return S_OK;
}

HRESULT Traced() {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

using Function = HRESULT (*)();

/// Calls through a pointer that the compiler cannot see through, or it would omit the calls.
void Call(Function i_function, int i_count) {
    Function volatile function = i_function;
    for (int i = 0; i < i_count; ++i)
        function();
}

/// Writes what a traced call writes, without tracing: its two lines, one write each, each at its own position, as in a
/// log that several threads share.
class TwoLines {
public:
    explicit TwoLines(const std::filesystem::path& i_path)
        : m_file(CreateFileW(i_path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    TwoLines(const TwoLines&) = delete;
    TwoLines& operator=(const TwoLines&) = delete;
    ~TwoLines() { CloseHandle(m_file); }

    void Write(int i_count) {
        constexpr std::string_view entry = "2026-11-21 10:00:00.000| 120|`anonymous-namespace'::Traced--> \n";
        constexpr std::string_view exit = "2026-11-21 10:00:00.000| 120|`anonymous-namespace'::Traced<-- S_OK\n";
        for (int i = 0; i < i_count; ++i)
            for (const std::string_view line : {entry, exit}) {
                OVERLAPPED place{};
                place.Offset = m_size;
                m_size += static_cast<DWORD>(line.size());
                DWORD written = 0;
                WriteFile(m_file, line.data(), static_cast<DWORD>(line.size()), &written, &place);
            }
    }

private:
    HANDLE m_file;
    DWORD m_size = 0;
};

} // namespace

void MeasureTracing(Report& io_report, const Effort& i_effort) {
    const Contest off(i_effort.rounds,
                      {[] { Call(&Untraced, calls_when_off); }, [] { Call(&Traced, calls_when_off); }});
    const double off_scale = nanoseconds / calls_when_off;
    io_report.Add({"a call, traced, log off", off.Wall(1) * off_scale, "ns", off.Wall(0) * off_scale, {}, {}, {}});
    io_report.Add({"of this, tracing", (off.Wall(1) - off.Wall(0)) * off_scale, "ns", {}, {}, {}, off_aim});

    const Tests::TemporaryFolder folder;
    const Tests::TemporaryVariable temporary(L"TMP", folder.Path().wstring());
    const Tests::LogSwitch log_to_file(2);
    InitLog();
    {
        TwoLines two_lines(folder.Path() / "bare.log");
        const Contest on(i_effort.rounds,
                         {[&] { two_lines.Write(calls_when_on); }, [] { Call(&Traced, calls_when_on); }});
        const double on_scale = microseconds / calls_when_on;
        io_report.Add({"a call, traced, log to a file",
                       on.Wall(1) * on_scale,
                       "us",
                       on.Wall(0) * on_scale,
                       on.WallRatio(1, 0),
                       on.CpuRatio(1, 0),
                       {}});
    }
    CloseLog();
}

} // namespace Bench
