#include "commands/Shell.h"

#include "base/Unicode.h"
#include "commands/Commands.h"

namespace DevHost {
namespace {

constexpr wchar_t trace_key[] = L"Software\\Talvern Soft\\QorvEditor\\3.0\\Debug";
constexpr wchar_t trace_value[] = L"DropboxLog";

/// Sets the debug log's switch while the plug-in is loaded, which is when it reads it, and puts the user's own setting
/// back.
class TraceSwitch {
public:
    explicit TraceSwitch(std::optional<DWORD> i_level) {
        if (!i_level)
            return;
        DWORD size = DWORD{sizeof(m_before)};
        m_had_level = RegGetValueW(HKEY_CURRENT_USER, trace_key, trace_value, RRF_RT_REG_DWORD, nullptr, &m_before,
                                   &size) == ERROR_SUCCESS;
        const LSTATUS status = Set(*i_level);
        Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), L"Cannot set the debug log's switch");
        m_is_set = true;
    }
    ~TraceSwitch() {
        if (m_is_set && m_had_level)
            Set(m_before);
        else if (m_is_set)
            RegDeleteKeyValueW(HKEY_CURRENT_USER, trace_key, trace_value);
    }
    TraceSwitch(const TraceSwitch&) = delete;
    TraceSwitch& operator=(const TraceSwitch&) = delete;

private:
    static LSTATUS Set(DWORD i_level) {
        return RegSetKeyValueW(HKEY_CURRENT_USER, trace_key, trace_value, REG_DWORD, &i_level, DWORD{sizeof(i_level)});
    }

    DWORD m_before = 0;
    bool m_had_level = false;
    bool m_is_set = false;
};

/// Writes to standard error if that is a terminal; null otherwise.
ProgressLine::Writer ErrorTerminal() {
    if (!IsTerminal(STD_ERROR_HANDLE))
        return nullptr;
    return [](std::string_view i_text) {
        DWORD written = 0; // Progress that can't be written is no loss.
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), i_text.data(), static_cast<DWORD>(i_text.size()), &written, nullptr);
    };
}

} // namespace

Shell::Shell(Options i_options, CancelFlag* i_cancel_flag)
    : m_options(std::move(i_options))
    , m_cancel_flag(i_cancel_flag)
    , m_output(m_options.is_json)
    , m_progress(m_options.shows_progress ? ErrorTerminal() : nullptr)
    , m_accounts(m_options.profile) {}

int Shell::Execute(const CommandLine& i_line) {
    try {
        Run(i_line);
        return exit_ok;
    } catch (const LeakFailure& failure) {
        m_output.Error(failure);
        return exit_leak;
    } catch (const Failure& failure) {
        return ReportEnd(failure);
    } catch (const ScriptStopped& stopped) {
        m_output.Note(L"stopped at " + stopped.place);
        return stopped.exit_code;
    } catch (const std::bad_alloc&) {
        m_output.Error({E_OUTOFMEMORY, L"There is not enough memory"});
    } catch (const std::exception& error) {
        m_output.Error({E_FAIL, FromUtf8(error.what())});
    }
    return exit_failed;
}

void Shell::Run(const CommandLine& i_line) {
    try {
        RunCommand(*this, i_line);
    } catch (...) {
        m_progress.Erase();
        throw;
    }
}

/// After Ctrl+C every failure is its consequence, but only the expected one is put in fewer words.
int Shell::ReportEnd(const Failure& i_failure) const {
    VARIANT_BOOL is_interrupted = VARIANT_FALSE;
    m_cancel_flag->get_IsCanceled(&is_interrupted);
    const bool is_canceled = i_failure.Code() == Qorv::ErrorCanceled;
    if (is_interrupted == VARIANT_FALSE) {
        m_output.Error(i_failure);
        return is_canceled ? exit_canceled : exit_failed;
    }
    m_output.Error(is_canceled ? Failure(i_failure.Code(), L"Stopped by Ctrl+C: " + i_failure.Text()) : i_failure);
    return exit_interrupted;
}

int Shell::Finish() {
    try {
        Unload();
        return exit_ok;
    } catch (const LeakFailure& failure) {
        m_output.Note(failure.Text());
        return exit_leak;
    } catch (const Failure& failure) {
        m_output.Note(failure.Text());
        return exit_failed;
    }
}

PluginHost& Shell::Plugin() {
    if (m_plugin == nullptr) {
        const TraceSwitch tracing(m_options.trace);
        m_plugin =
            std::make_unique<PluginHost>(m_options.profile, m_options.module, [this](const std::wstring& i_notice) {
                m_progress.Erase();
                m_output.Note(i_notice);
            });
        m_plugin->Cache().SetProgress([this](bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total) {
            m_progress.Report(i_is_upload, i_done, i_total, GetTickCount64());
        });
    }
    return *m_plugin;
}

Connections& Shell::Locations() {
    if (m_connections == nullptr)
        m_connections = std::make_unique<Connections>(FileSystem(), m_accounts, m_options.user, m_cancel_flag);
    return *m_connections;
}

void Shell::Unload() {
    m_connections.reset();
    if (m_plugin == nullptr)
        return;
    const auto plugin = std::move(m_plugin);
    plugin->Unload();
}

} // namespace DevHost
