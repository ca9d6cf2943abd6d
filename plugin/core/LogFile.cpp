#include "core/LogFile.h"

#include "core/Text.h"

bool LogFile::Open(const std::wstring& i_path) noexcept {
    m_file = CreateFileW(i_path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    m_size = 0;
    return IsOpen();
}

void LogFile::Write(std::wstring_view i_line) {
    const std::string bytes = ToUtf8(i_line);
    ULARGE_INTEGER position{};
    position.QuadPart = m_size.fetch_add(bytes.size());
    OVERLAPPED place{};
    place.Offset = position.LowPart;
    place.OffsetHigh = position.HighPart;
    DWORD written = 0;
    WriteFile(m_file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, &place);
}

void LogFile::Close() noexcept {
    if (IsOpen())
        CloseHandle(std::exchange(m_file, INVALID_HANDLE_VALUE));
}
