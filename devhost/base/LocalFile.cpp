#include "base/LocalFile.h"

#include "base/Failure.h"

#include <algorithm>
#include <utility>

namespace DevHost {
namespace {

OVERLAPPED At(std::uint64_t i_position) noexcept {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(i_position);
    position.OffsetHigh = static_cast<DWORD>(i_position >> 32);
    return position;
}

/// Whether the file is removed when its last handle is closed.
bool SetGoesWithHandle(HANDLE i_file, bool i_goes) noexcept {
    FILE_DISPOSITION_INFO disposition{};
    disposition.DeleteFile = i_goes ? TRUE : FALSE;
    return SetFileInformationByHandle(i_file, FileDispositionInfo, &disposition, DWORD{sizeof(disposition)}) != FALSE;
}

} // namespace

LocalFile::LocalFile(std::filesystem::path i_path, Mode i_mode, std::filesystem::path i_shown_as)
    : m_path(std::move(i_path)), m_shown_as(i_shown_as.empty() ? m_path : std::move(i_shown_as)) {
    const bool is_read = i_mode == Mode::Read;
    const bool is_new = i_mode == Mode::CreateNew || i_mode == Mode::Temporary;
    const DWORD access = GENERIC_READ | (is_read ? 0 : GENERIC_WRITE) | (i_mode == Mode::Temporary ? DELETE : 0);
    const DWORD share = is_read ? FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE : FILE_SHARE_READ;
    m_handle = CreateFileW(m_path.c_str(), access, share, nullptr, is_new ? CREATE_NEW : OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (!IsOpen())
        Throw(is_new ? L"Cannot create " : L"Cannot open ");
    if (i_mode == Mode::Temporary)
        SetGoesWithHandle(m_handle, true); // Where the file system can't do it, the file's owner removes it.
}

LocalFile::LocalFile(LocalFile&& io_other) noexcept
    : m_path(std::move(io_other.m_path))
    , m_shown_as(std::move(io_other.m_shown_as))
    , m_handle(std::exchange(io_other.m_handle, INVALID_HANDLE_VALUE)) {}

LocalFile& LocalFile::operator=(LocalFile&& io_other) noexcept {
    std::swap(m_path, io_other.m_path);
    std::swap(m_shown_as, io_other.m_shown_as);
    std::swap(m_handle, io_other.m_handle);
    return *this;
}

LocalFile::~LocalFile() {
    Close();
}

void LocalFile::Close() noexcept {
    if (IsOpen())
        CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
}

ULONG LocalFile::ReadAt(std::uint64_t i_position, void* o_data, ULONG i_size) {
    OVERLAPPED position = At(i_position);
    DWORD read = 0;
    if (!ReadFile(m_handle, o_data, i_size, &read, &position) && GetLastError() != ERROR_HANDLE_EOF)
        Throw(L"Cannot read ");
    return read;
}

void LocalFile::WriteAt(std::uint64_t i_position, const void* i_data, ULONG i_size) {
    OVERLAPPED position = At(i_position);
    DWORD written = 0;
    if (!WriteFile(m_handle, i_data, i_size, &written, &position))
        Throw(L"Cannot write ");
    if (written != i_size) {
        SetLastError(ERROR_DISK_FULL);
        Throw(L"Cannot write ");
    }
}

std::uint64_t LocalFile::Size() {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(m_handle, &size))
        Throw(L"Cannot read the size of ");
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::uint64_t LocalFile::WriteTime() {
    FILETIME time{};
    if (!GetFileTime(m_handle, nullptr, nullptr, &time))
        Throw(L"Cannot read the time of ");
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

void LocalFile::SetSize(std::uint64_t i_size) {
    LARGE_INTEGER size{};
    size.QuadPart = static_cast<LONGLONG>(i_size);
    if (!SetFilePointerEx(m_handle, size, nullptr, FILE_BEGIN) || !SetEndOfFile(m_handle))
        Throw(L"Cannot set the size of ");
}

void LocalFile::Keep() {
    if (!SetGoesWithHandle(m_handle, false))
        Throw(L"Cannot keep ");
}

void LocalFile::Flush() {
    if (!FlushFileBuffers(m_handle))
        Throw(L"Cannot write ");
}

void LocalFile::Throw(std::wstring_view i_verb) const {
    throw LastErrorFailure(std::wstring(i_verb) + m_shown_as.wstring());
}

void MoveLocalFile(const std::filesystem::path& i_from, const std::filesystem::path& i_to) {
    if (!MoveFileExW(i_from.c_str(), i_to.c_str(), MOVEFILE_REPLACE_EXISTING))
        throw LastErrorFailure(L"Cannot write " + i_to.wstring());
}

std::string ReadWholeFile(const std::filesystem::path& i_path) {
    LocalFile file(i_path, LocalFile::Mode::Read);
    std::string bytes(static_cast<std::size_t>(file.Size()), '\0');
    bytes.resize(file.ReadAt(0, bytes.data(), static_cast<ULONG>(bytes.size())));
    return bytes;
}

void WriteFileAtomically(const std::filesystem::path& i_path, std::string_view i_bytes) {
    std::error_code ignored; // Creating the file reports what is wrong.
    std::filesystem::create_directories(i_path.parent_path(), ignored);
    std::filesystem::path temporary = i_path;
    temporary += L"." + std::to_wstring(GetCurrentProcessId()) + L".tmp";
    std::filesystem::remove(temporary, ignored);
    {
        LocalFile file(temporary, LocalFile::Mode::CreateNew, i_path);
        file.WriteAt(0, i_bytes.data(), static_cast<ULONG>(i_bytes.size()));
        file.Flush();
    }
    MoveLocalFile(temporary, i_path);
}

} // namespace DevHost
