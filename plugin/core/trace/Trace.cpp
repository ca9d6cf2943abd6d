#include "core/trace/Trace.h"

#include "core/trace/LogFile.h"

#include <cwchar>
#include <utility>

namespace {

constexpr wchar_t switch_key[] = L"Software\\Talvern Soft\\QorvEditor\\3.0\\Debug";
constexpr wchar_t switch_value[] = L"DropboxLog";
constexpr wchar_t log_file_name[] = L"Qorvx-Dropbox.log";
constexpr std::size_t head_capacity = 1024; // Longer heads are cut.

bool g_is_first_use = true;
bool g_log_to_file = true;
LogFile g_log_file;

/// Preserves the thread's last error: writing a line must not change what the traced function reads next.
class LastErrorKeeper {
public:
    LastErrorKeeper() noexcept : m_code(GetLastError()) {}
    ~LastErrorKeeper() { SetLastError(m_code); }
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

private:
    DWORD m_code;
};

/// 0 for a value that is missing or is not a 32-bit number.
DWORD ReadLogSwitch() noexcept {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, switch_key, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return 0;
    DWORD type = REG_NONE;
    DWORD level = 0;
    DWORD size = sizeof level;
    const LSTATUS status = RegQueryValueExW(key, switch_value, nullptr, &type, reinterpret_cast<BYTE*>(&level), &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof level ? level : 0;
}

bool OpenLogFile() {
    wchar_t folder[260];
    const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(folder)), folder);
    if (length == 0 || length >= std::size(folder))
        return false;
    return g_log_file.Open(std::wstring(folder, length) + log_file_name);
}

std::wstring LineHead(const wchar_t* i_message) {
    SYSTEMTIME now;
    GetSystemTime(&now);
    wchar_t head[head_capacity] = {};
    // The space after the message is deliberate: an entry line ends with it. %ls, because this printf reads %s as
    // narrow text; the result is not used, because compilers disagree on it when the head is cut.
    std::swprintf(head, std::size(head), L"%d-%02d-%02d %02d:%02d:%02d.%03d|%4x|%ls ", now.wYear, now.wMonth, now.wDay,
                  now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, static_cast<unsigned>(GetCurrentThreadId()),
                  i_message);
    head[std::size(head) - 1] = L'\0';
    return head;
}

void WriteLine(const wchar_t* i_message, std::wstring_view i_result) noexcept {
    const LastErrorKeeper keeper;
    try {
        std::wstring line = LineHead(i_message);
        line.append(i_result).append(L"\n");
        if (g_log_to_file)
            g_log_file.Write(line);
        else
            OutputDebugStringW(line.c_str());
    } catch (...) {
        // A line that cannot be composed is lost; the traced function continues.
    }
}

void WriteLine(const FunctionName& i_name, const wchar_t* i_arrow, std::wstring_view i_result) noexcept {
    const LastErrorKeeper keeper;
    try {
        WriteLine((i_name.Text() + i_arrow).c_str(), i_result);
    } catch (...) {
        // As above.
    }
}

} // namespace

void InitLog() noexcept {
    if (std::exchange(g_is_first_use, false)) {
        const DWORD level = ReadLogSwitch();
        Detail::g_log_enabled = level != 0;
        g_log_to_file = level != 1;
    }
    if (!Detail::g_log_enabled || !g_log_to_file || g_log_file.IsOpen())
        return;
    try {
        g_log_to_file = OpenLogFile();
    } catch (...) {
        g_log_to_file = false;
    }
}

void CloseLog() noexcept {
    Detail::g_log_enabled = false;
    g_log_file.Close();
}

void Trace(const wchar_t* message, const wchar_t* result) noexcept {
    if (IsLogEnabled())
        WriteLine(message, result);
}

void TraceText(const FunctionName& i_name, std::wstring_view i_text) noexcept {
    if (IsLogEnabled())
        WriteLine(i_name, L"", i_text);
}

void FunctionTrace::WriteEntry() const noexcept {
    WriteLine(m_name, L"-->", {});
}

void FunctionTrace::WriteExit(std::wstring_view i_result) noexcept {
    m_is_exit_written = true;
    if (IsLogEnabled())
        WriteLine(m_name, L"<--", i_result);
}

void FunctionTrace::WriteExitOnce() noexcept {
    if (!m_is_exit_written)
        WriteExit({});
}
