#pragma once

#include "core/trace/FunctionName.h"
#include "qorv/Base.h"

#include <string>
#include <string_view>

// The debug log, and the lines that every traced function writes to it.
//
// A traced function begins with `TRACE_FUNCTION();`, which writes "<name>-->" and, at the scope's end, "<name><--". A
// function that returns a code ends with `return TRACE_RESULT(S_OK);`, which writes the code's name into the exit line.
// With the log off this costs one branch at entry and one at exit.

/// Reads the registry switch (only on the first call) and opens the log file if the switch asks for one.
void InitLog() noexcept;

/// Turns tracing off and closes the file.
void CloseLog() noexcept;

/// Writes one line if the log is on: the time, the thread, `message` and `result`. Any thread. Loses the line rather
/// than fail, and keeps the thread's last error.
void Trace(const wchar_t* message, const wchar_t* result) noexcept;

/// Writes one line under a function's name: for texts that are neither its entry nor its exit.
void TraceText(const FunctionName& i_name, std::wstring_view i_text) noexcept;

namespace Detail {

inline bool g_log_enabled = false;

} // namespace Detail

/// Whether any lines are written: ask before composing an expensive one.
inline bool IsLogEnabled() noexcept {
    return Detail::g_log_enabled;
}

/// One call of a traced function: writes its entry line now and its exit line at the latest at the end of the scope.
class FunctionTrace {
public:
    explicit FunctionTrace(const FunctionName& i_name) noexcept : m_name(i_name) {
        if (IsLogEnabled()) [[unlikely]]
            WriteEntry();
    }
    FunctionTrace(const FunctionTrace&) = delete;
    FunctionTrace& operator=(const FunctionTrace&) = delete;
    ~FunctionTrace() {
        if (IsLogEnabled()) [[unlikely]]
            WriteExitOnce();
    }

    const FunctionName& Name() const noexcept { return m_name; }

    /// Writes the exit line with the result's name and passes the result through.
    template <typename Result>
    Result Return(Result i_result, const wchar_t* i_result_name) noexcept {
        if (IsLogEnabled()) [[unlikely]]
            WriteExit(i_result_name);
        return i_result;
    }

    /// Writes an exit line. There can be two: a boundary reports the code that it returns for an exception, and the
    /// check that threw has reported too.
    void WriteExit(std::wstring_view i_result) noexcept;

private:
    void WriteEntry() const noexcept;
    void WriteExitOnce() noexcept;

    const FunctionName& m_name;
    bool m_is_exit_written = false;
};

// The signature of the enclosing function, as the compiler writes it: nobody has to type a name, so none can be wrong.
#ifdef _MSC_VER
#define FUNCTION_SIGNATURE __FUNCSIG__
#else
#define FUNCTION_SIGNATURE static_cast<const char*>(__PRETTY_FUNCTION__)
#endif

/// The first statement of a traced function.
#define TRACE_FUNCTION()                                                                                               \
    static constexpr FunctionName trace_name{FUNCTION_SIGNATURE};                                                      \
    FunctionTrace trace_function(trace_name)

/// Ends a traced function: `return TRACE_RESULT(S_OK);`. The code is logged as written here.
#define TRACE_RESULT(code) trace_function.Return(code, L"" #code)

/// Writes a text under the traced function's name.
#define TRACE_TEXT(text)                                                                                               \
    do {                                                                                                               \
        if (IsLogEnabled()) [[unlikely]]                                                                               \
            TraceText(trace_function.Name(), text);                                                                    \
    } while (false)
