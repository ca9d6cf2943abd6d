#include "services/CacheEntry.h"

#include "base/Failure.h"
#include "services/ErrorDetails.h"
#include "services/FilesCache.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace DevHost {
namespace {

// Bytes per transfer to or from the service; WinINet is much slower with smaller pieces.
constexpr ULONG piece_size = 64 * 1024;

constexpr std::uint64_t everything = std::numeric_limits<std::uint64_t>::max();

/// Throws the failure of a call of the plug-in, with the plug-in's reason if it gave one.
void CheckCall(HRESULT i_result, const ErrorDetails& i_said) {
    if (FAILED(i_result))
        throw Failure(i_result, ReasonInWords(i_result, i_said.Text()));
}

} // namespace

void CacheEntry::Bind(Qorv::IAFS_Name* i_name, Qorv::IAFS_FileCacheCallbacks* i_callback) {
    m_name = i_name;
    m_callback = i_callback;
}

void CacheEntry::StartWithRemoteFile(std::uint64_t i_size) {
    m_size = i_size;
}

void CacheEntry::StartEmpty() {
    m_is_complete = true;
    m_is_changed = true; // No note yet: an empty file left by a crash must replace nothing.
}

void CacheEntry::StartWithKeptBytes() {
    m_is_changed = m_has_note = true; // Do this first, so that the bytes stay whatever fails below.
    m_is_complete = true;
    m_size = m_files.Bytes().Size();
}

HRESULT STDMETHODCALLTYPE CacheEntry::Read(ULONGLONG i_pos, void* o_data, ULONG i_size, ULONG* o_read,
                                           Qorv::IQorv_ErrorDetails* o_details,
                                           Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    if (o_read == nullptr)
        return E_POINTER;
    *o_read = 0;
    if (o_data == nullptr && i_size != 0)
        return E_POINTER;
    return Answer(o_details, [&] {
        RequireOpen();
        FetchUpTo(i_pos > everything - i_size ? everything : i_pos + i_size, i_cancel_flag);
        if (i_pos < m_size)
            *o_read = m_files.Bytes().ReadAt(i_pos, o_data,
                                             static_cast<ULONG>(std::min<std::uint64_t>(i_size, m_size - i_pos)));
    });
}

HRESULT STDMETHODCALLTYPE CacheEntry::Write(ULONGLONG i_pos, const void* i_data, ULONG i_size, ULONG* o_written,
                                            Qorv::IQorv_ErrorDetails* o_details,
                                            Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    if (o_written == nullptr)
        return E_POINTER;
    *o_written = 0;
    if (i_data == nullptr && i_size != 0)
        return E_POINTER;
    return Answer(o_details, [&] {
        RequireOpen();
        if (i_size == 0)
            return;
        FetchUpTo(everything, i_cancel_flag);
        BeginChange();
        m_files.Bytes().WriteAt(i_pos, i_data, i_size);
        m_size = std::max<std::uint64_t>(m_size, i_pos + i_size);
        *o_written = i_size;
    });
}

HRESULT STDMETHODCALLTYPE CacheEntry::get_Size(ULONGLONG* o_size) noexcept {
    if (o_size == nullptr)
        return E_POINTER;
    *o_size = m_size;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE CacheEntry::SetSize(ULONGLONG i_size, Qorv::IQorv_ErrorDetails* o_details,
                                              Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    return Answer(o_details, [&] {
        RequireOpen();
        if (i_size > 0)
            FetchUpTo(i_size, i_cancel_flag); // Bytes that are cut off need not be fetched.
        if (m_is_complete && i_size == m_size)
            return;
        BeginChange();
        m_files.Bytes().SetSize(i_size);
        m_size = i_size;
        m_is_complete = true;
    });
}

HRESULT STDMETHODCALLTYPE CacheEntry::Flush(Qorv::IQorv_ErrorDetails* o_details,
                                            Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    return Answer(o_details, [&] {
        RequireOpen();
        if (m_is_changed)
            Upload(i_cancel_flag);
    });
}

HRESULT STDMETHODCALLTYPE CacheEntry::get_TempFileName(BSTR* o_path) noexcept {
    return AnswerText(Path().wstring(), o_path);
}

/// A fetch that reaches the announced size continues to the real end of the file, which may have changed.
void CacheEntry::FetchUpTo(std::uint64_t i_end, Qorv::IQorv_CancelFlag* i_cancel_flag) {
    std::vector<BYTE> piece;
    while (!m_is_complete && (m_fetched < i_end || m_fetched >= m_size)) {
        piece.resize(piece_size);
        try {
            FetchPiece(piece, i_cancel_flag);
        } catch (...) {
            m_fetched = 0; // The callback can only read a file from the start.
            throw;
        }
    }
}

void CacheEntry::FetchPiece(std::vector<BYTE>& io_piece, Qorv::IQorv_CancelFlag* i_cancel_flag) {
    const auto said = Qorv::Create<ErrorDetails>();
    ULONG read = 0;
    const HRESULT result = m_callback->Read(m_fetched, io_piece.data(), piece_size, &read, said, i_cancel_flag);
    if (result == HRESULT_FROM_WIN32(ERROR_HANDLE_EOF) || (SUCCEEDED(result) && read == 0)) {
        m_files.Bytes().SetSize(m_fetched); // A longer, broken download may have left its tail.
        m_is_complete = true;
        m_size = m_fetched;
        return;
    }
    CheckCall(result, *said);
    m_files.Bytes().WriteAt(m_fetched, io_piece.data(), read);
    m_fetched += read;
    m_size = std::max(m_size, m_fetched);
    m_owner->OnTransferred(false, m_fetched, m_size);
}

/// Write the note to the disk before the first byte differs.
void CacheEntry::BeginChange() {
    if (!m_has_note)
        WriteNote();
    m_is_changed = true;
}

void CacheEntry::WriteNote() {
    m_files.WriteNote(Location());
    m_has_note = true;
}

void CacheEntry::ForgetChanges() {
    m_is_changed = m_has_note = false;
    m_files.RemoveNote();
}

void CacheEntry::Upload(Qorv::IQorv_CancelFlag* i_cancel_flag) {
    try {
        Send(i_cancel_flag);
    } catch (const Failure& failure) {
        if (m_original_stands && m_original_stands()) {
            ForgetChanges();
            throw;
        }
        Answer([&] { // Both are already on the disk, unless power fails or the file has been renamed.
            m_files.Bytes().Flush();
            WriteNote();
        });
        throw Failure(failure.Code(), failure.Text() + L". The changed file is kept as " + Path().wstring());
    }
    ForgetChanges();
    m_owner->OnUploaded(*this);
}

void CacheEntry::Send(Qorv::IQorv_CancelFlag* i_cancel_flag) {
    const auto said = Qorv::Create<ErrorDetails>();
    CheckCall(m_callback->SetSize(m_size, said, i_cancel_flag), *said);
    CheckCall(m_callback->BeginWrite(said, i_cancel_flag), *said);
    std::vector<BYTE> piece(piece_size);
    for (std::uint64_t position = 0; position < m_size;) {
        const ULONG read = m_files.Bytes().ReadAt(position, piece.data(), piece_size);
        for (ULONG sent = 0; sent < read;) {
            ULONG written = 0;
            CheckCall(
                m_callback->Write(position + sent, piece.data() + sent, read - sent, &written, said, i_cancel_flag),
                *said);
            if (written == 0)
                throw Failure(E_FAIL, L"The service accepts no more bytes");
            sent += written;
            m_owner->OnTransferred(true, position + sent, m_size);
        }
        if (read == 0)
            throw Failure(E_FAIL, L"The file is shorter on the disk than it should be");
        position += read;
    }
    CheckCall(m_callback->EndWrite(said, i_cancel_flag), *said);
}

void CacheEntry::RequireOpen() {
    if (!m_files.Bytes().IsOpen())
        throw Failure(E_UNEXPECTED, L"The file is closed");
}

CacheEntry::~CacheEntry() {
    Close();
}

void CacheEntry::Remove() {
    Unbind();
    m_files.Remove();
}

std::filesystem::path CacheEntry::MoveToReplaced() {
    Unbind();
    return m_files.MoveToReplaced();
}

void CacheEntry::Close() {
    Unbind();
    if (m_has_note)
        m_files.Leave();
    else if (m_files.Bytes().IsOpen())
        m_files.Remove();
}

void CacheEntry::Unbind() {
    m_owner = nullptr;
    m_name.Reset();
    m_callback.Reset();
}

} // namespace DevHost
