#include "commands/Shell.h"

#include "base/Unicode.h"
#include "commands/Commands.h"

namespace DevHost {
namespace {

constexpr wchar_t trace_key[] = L"Software\\Talvern Soft\\QorvEditor\\3.0\\Debug";
constexpr wchar_t trace_value[] = L"DropboxLog";

} // namespace

Shell::Shell(Options i_options, CancelFlag* i_cancel_flag)
    : m_options(std::move(i_options))
    , m_cancel_flag(i_cancel_flag)
    , m_output(m_options.is_json)
    , m_accounts(m_options.profile) {}

int Shell::Execute(const CommandLine& i_line) {
    try {
        RunCommand(*this, i_line);
        return exit_ok;
    } catch (const LeakFailure& failure) {
        m_output.Error(failure);
        return exit_leak;
    } catch (const Failure& failure) {
        m_output.Error(failure);
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
        SetTraceSwitch();
        m_plugin = std::make_unique<PluginHost>(m_options.profile, m_options.module,
                                                [this](const std::wstring& i_notice) { m_output.Note(i_notice); });
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

/// The plug-in reads its switch when it is loaded.
void Shell::SetTraceSwitch() const {
    if (!m_options.trace)
        return;
    const DWORD level = *m_options.trace;
    const LSTATUS status =
        RegSetKeyValueW(HKEY_CURRENT_USER, trace_key, trace_value, REG_DWORD, &level, DWORD{sizeof(level)});
    Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)), L"Cannot set the debug log's switch");
}

} // namespace DevHost
