#include "Benchmarks.h"
#include "Folders.h"
#include "LoadedModule.h"
#include "Measure.h"
#include "base/Failure.h"
#include "services/CabNode.h"

#include <commctrl.h>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace Bench {
namespace {

constexpr std::size_t judged_folder = 10'000;
constexpr Figure::Aim time_aim{false, 200};
constexpr Figure::Aim linear_aim{false, 1.25};
constexpr UINT filled_message = WM_APP;
constexpr wchar_t initial_folder[] = L"InitialPathName";

double Now() {
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

BOOL CALLBACK TakeList(HWND i_window, LPARAM o_list) {
    wchar_t name[32];
    GetClassNameW(i_window, name, 32);
    if (std::wstring_view(name) == WC_LISTVIEWW)
        *reinterpret_cast<HWND*>(o_list) = i_window;
    return TRUE;
}

BOOL CALLBACK LookForList(HWND i_window, LPARAM o_list) {
    if (IsWindowVisible(i_window))
        EnumChildWindows(i_window, TakeList, o_list);
    return TRUE;
}

/// The list of the dialog that is open.
HWND ListOfDialog() {
    HWND list = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), LookForList, reinterpret_cast<LPARAM>(&list));
    return list;
}

/// Opens the dialog at a folder, and closes it as soon as the list shows the folder.
class FillTimer {
public:
    explicit FillTimer(const LoadedModule& i_module) : m_module(i_module) {
        SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Process));
        m_module.Host().OnWorkersCall([this](bool i_is_done) { i_is_done ? AskForFilled() : OnArrival(); });
    }
    ~FillTimer() {
        m_module.Host().OnWorkersCall(nullptr);
        DestroyWindow(m_window);
    }
    FillTimer(const FillTimer&) = delete;
    FillTimer& operator=(const FillTimer&) = delete;

    /// Seconds from the arrival of the data to the painted list.
    double Measure(std::size_t i_entries) {
        Qorv::ComPtr<Qorv::IAUX_CabNode> made;
        DevHost::Check(m_module.FileSystem().CreateDlgParams(Qorv::AFS_Dlg_OpenFiles, &made), L"CreateDlgParams");
        const DevHost::CabNode::Node parameters(static_cast<DevHost::CabNode*>(made.Get()));
        const auto folder = m_module.NameOf(FolderOf(i_entries));
        parameters->Member(initial_folder)->SetValue(Qorv::ComPtr<IUnknown>(folder.Get()));
        Qorv::ComPtr<Qorv::IAFS_NamesCollection> names;
        LONG choice = 0;
        m_module.FileSystem().ShowDlg(Qorv::AFS_Dlg_OpenFiles, parameters, nullptr, nullptr, &names, &choice);
        if (m_rows != static_cast<int>(i_entries) + 1) // And "../".
            throw std::runtime_error("the dialog showed " + std::to_string(m_rows) + " rows");
        return m_painted - m_arrived;
    }

private:
    void OnArrival() { m_arrived = Now(); }

    /// Comes after what the dialog has already posted to itself.
    void AskForFilled() { PostMessageW(m_window, filled_message, 0, 0); }

    void OnFilled() {
        const HWND list = ListOfDialog();
        UpdateWindow(list);
        m_painted = Now();
        m_rows = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
        PostMessageW(GetParent(list), WM_CLOSE, 0, 0);
    }

    static LRESULT CALLBACK Process(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
        auto* const timer = reinterpret_cast<FillTimer*>(GetWindowLongPtrW(i_window, GWLP_USERDATA));
        if (i_message != filled_message)
            return DefWindowProcW(i_window, i_message, i_wparam, i_lparam);
        timer->OnFilled();
        return 0;
    }

    const LoadedModule& m_module;
    const HWND m_window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    double m_arrived = 0;
    double m_painted = 0;
    int m_rows = 0;
};

} // namespace

void MeasureDialog(Report& io_report, const Effort& i_effort) {
    LoadedModule module;
    module.BindAccount();
    FillTimer timer(module);
    std::vector<double> entry_times;
    for (const std::size_t entries : FolderSizes(i_effort)) {
        std::vector<double> times(static_cast<std::size_t>(i_effort.rounds));
        std::ranges::generate(times, [&] { return timer.Measure(entries); });
        const double time = Median(times);
        io_report.Add({"fill the dialog, " + SizeText(entries) + " entries",
                       time * milliseconds,
                       "ms",
                       {},
                       {},
                       {},
                       entries == judged_folder ? std::optional(time_aim) : std::nullopt});
        entry_times.push_back(time * microseconds / static_cast<double>(entries));
    }
    const double last = entry_times.back();
    const double before = entry_times[entry_times.size() - 2];
    io_report.Add({"time per entry, beside a tenth of them", last, "us", before, last / before, {}, linear_aim});
}

} // namespace Bench
