#pragma once

#include "qorv/Base.h"

#include <string>
#include <string_view>

/// The open log file, in UTF-8.
///
/// Not a wide stream of the standard library: in the "C" locale such a stream fails at the first character that is not
/// ASCII, and closing it then never returns. The file is opened for appending only, so that two processes with the same
/// log never overwrite each other's lines. Threads take turns with a system mutex: unlike a lock of the runtime, it is
/// released when its thread ends with the process.
class LogFile {
public:
    LogFile() = default;
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() { Close(); }

    /// Creates the file, or empties it. Others may read it while it is written.
    bool Open(const std::wstring& i_path) noexcept;
    bool IsOpen() const noexcept { return m_file != INVALID_HANDLE_VALUE; }
    /// A lone surrogate becomes U+FFFD. A line that cannot be written is lost.
    void Write(std::wstring_view i_line);
    void Close() noexcept;

private:
    HANDLE m_file = INVALID_HANDLE_VALUE;
    HANDLE m_turn = nullptr;
};
