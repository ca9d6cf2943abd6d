#include "core/trace/LogFile.h"

#include "core/trace/Text.h"

#include <utility>

bool LogFile::Open(const std::wstring& i_path) noexcept {
    m_turn = CreateMutexW(nullptr, FALSE, nullptr);
    m_file = CreateFileW(i_path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return IsOpen();
}

void LogFile::Write(std::wstring_view i_line) {
    const std::string bytes = ToUtf8(i_line);
    WaitForSingleObject(m_turn, INFINITE);
    DWORD written = 0;
    WriteFile(m_file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    ReleaseMutex(m_turn);
}

void LogFile::Close() noexcept {
    if (IsOpen())
        CloseHandle(std::exchange(m_file, INVALID_HANDLE_VALUE));
    if (m_turn != nullptr)
        CloseHandle(std::exchange(m_turn, nullptr));
}
