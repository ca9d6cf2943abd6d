#include "afs/CacheCallback.h"

#include "afs/ObjectLookup.h"
#include "afs/Session.h"
#include "core/host/Cancellation.h"
#include "core/trace/Check.h"

#include <cstddef>

namespace {

constexpr HRESULT end_of_data = static_cast<HRESULT>(0x80070026); // HRESULT_FROM_WIN32(ERROR_HANDLE_EOF)
constexpr wchar_t no_file[] = L"File does not exist";

} // namespace

/// A step of a transfer. If it fails, the transfer is abandoned.
class CacheCallback::Transfer {
public:
    explicit Transfer(CacheCallback& io_callback) noexcept : m_callback(io_callback) { TRACE_FUNCTION(); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
    ~Transfer() {
        TRACE_FUNCTION();
        if (!m_goes_on)
            m_callback.DropStreams();
    }
    void GoOn() noexcept {
        TRACE_FUNCTION();
        m_goes_on = true;
    }

private:
    CacheCallback& m_callback;
    bool m_goes_on = false;
};

CacheCallback::CacheCallback(Name* i_name, MissingFile i_missing_file, Name* i_lost_name)
    : m_name(i_name), m_lost_name(i_lost_name), m_missing_file(i_missing_file) {
    TRACE_FUNCTION();
    m_name->FollowMoves();
}

CacheCallback::~CacheCallback() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE CacheCallback::Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read,
                                              Qorv::IQorv_ErrorDetails* out_error_details,
                                              Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_read != nullptr, E_POINTER);
        *out_read = 0;
        CHECK_RETURN(size > 0, E_INVALIDARG);
        CHECK_RETURN(data != nullptr, E_POINTER);
        Transfer transfer(*this);
        CHECK_THROW(
            pos == m_pos,
            Exception(L"Requested read position is not equal to current one - random reading is not supported"));
        CHECK_THROW(!m_upload.has_value(), Exception(L"The file cannot be read while it is being written"));
        CHECK_THROW(m_name->BindObject(SharePoint::Web::BindObjectType::file) != nullptr, Exception(no_file));
        if (!m_download.has_value())
            OpenDownload();
        *out_read = m_download->Read(data, size);
        m_pos += *out_read;
        if (*out_read == 0)
            CheckFileSize(m_pos, !m_download->Length().has_value());
        transfer.GoOn();
        if (*out_read == 0)
            return trace_function.Return(end_of_data, L"ERROR_HANDLE_EOF");
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE CacheCallback::Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                               Qorv::IQorv_ErrorDetails* out_error_details,
                                               Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_written != nullptr, E_POINTER);
        *out_written = 0;
        CHECK_RETURN(size > 0, E_INVALIDARG);
        CHECK_RETURN(data != nullptr, E_INVALIDARG);
        Transfer transfer(*this);
        // The misspelling "writting" is deliberate.
        CHECK_THROW(pos == m_pos, Exception(L"Requested write position is not same as previous - random writting is "
                                            L"not supported"));
        CHECK_THROW(m_upload.has_value(), Exception(L"The upload was not begun"));
        CHECK_THROW(size <= m_upload->size - m_pos, Exception(L"More is written than the announced size"));
        WriteUpload(data, size);
        m_pos += size;
        transfer.GoOn();
        *out_written = size;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE CacheCallback::SetSize(ULONGLONG new_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                                 Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        m_size = new_size;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE CacheCallback::GetSize(ULONGLONG* out_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                                 Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_size != nullptr, E_POINTER);
        *out_size = 0;
        CHECK_THROW(m_name->BindObject(SharePoint::Web::BindObjectType::file) != nullptr, Exception(no_file));
        *out_size = m_name->GetObject()->GetInformation()._size;
        m_told_size = *out_size;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE CacheCallback::BeginWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        DropStreams();
        if (m_missing_file != MissingFile::Fails)
            CreateMissingFile();
        CHECK_THROW(m_name->BindObject(SharePoint::Web::BindObjectType::file) != nullptr, Exception(no_file));
        const auto object = m_name->GetObject();
        if (m_lost_name != nullptr)
            m_lost_name->SetObject(object);
        const auto file = object->AsFile();
        const ULONGLONG size = m_size.value_or(object->GetInformation()._size);
        m_upload = Upload{object, file, file->OpenWrite(size), size};
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE CacheCallback::EndWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                                  Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_THROW(m_upload.has_value(), Exception(L"The upload was not begun"));
        // Dropped when this returns, whatever the outcome.
        Upload upload = std::move(*m_upload);
        const ULONGLONG written = m_pos;
        DropStreams();
        CHECK_THROW(written == upload.size, Exception(L"Less was written than the announced size"));
        upload.file->FinishWrite(upload.request);
        CHECK_THROW(upload.object->GetInformation()._size == written,
                    Exception(L"The service received another number of bytes than were sent"));
        m_told_size = written;
        return TRACE_RESULT(S_OK);
    };
}

bool CacheCallback::IsCanceled(Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    const bool is_canceled = ::IsCanceled(cancel_flag);
    if (is_canceled)
        DropStreams();
    return is_canceled;
}

void CacheCallback::WriteUpload(const void* data, ULONG size) {
    TRACE_FUNCTION();
    const auto* bytes = static_cast<const std::byte*>(data);
    for (ULONG written = 0; written < size;) {
        const std::uint32_t step = m_upload->request.Write(bytes + written, size - written);
        CHECK_THROW(step > 0, Exception(L"The upload takes no more data"));
        written += step;
    }
}

void CacheCallback::OpenDownload() {
    TRACE_FUNCTION();
    m_download = m_name->GetObject()->AsFile()->OpenRead();
    // If the reply announces its length, check it before the cache has a byte.
    if (const auto length = m_download->Length())
        CheckFileSize(*length, false);
}

/// Whether a download of this size is complete, and of the file that was opened. The answer of a gateway or portal in
/// the service's place looks like a file too, and so does a download without an announced length that breaks off.
void CacheCallback::CheckFileSize(ULONGLONG i_size, bool i_asks_anew) {
    TRACE_FUNCTION();
    const auto object = m_name->GetObject();
    if (i_asks_anew || object->GetInformation()._size != i_size) {
        CHECK_THROW(RefreshObject(*object), Exception(no_file));
        CHECK_THROW(object->GetInformation()._size == i_size,
                    HResultException(L"The connection was closed before the whole file had arrived, or something else "
                                     L"was sent in its place",
                                     HRESULT_FROM_WIN32(ERROR_INTERNET_CONNECTION_ABORTED)));
    }
    CHECK_THROW(m_told_size.value_or(i_size) == i_size,
                Exception(L"The file was changed after it had been opened: close it, and open it again"));
}

/// Creates the file only if it is missing: an existing file is not emptied before its upload. If it was missing when it
/// was opened but exists now, somebody else has created it, and it is not replaced unless the user was told and saved
/// again: closing the file is not enough. An empty file may be left over from a failed upload.
void CacheCallback::CreateMissingFile() {
    TRACE_FUNCTION();
    const bool is_made_anew = m_missing_file == MissingFile::IsCreatedAnew && !m_name->IsReplacingAccepted();
    const auto web = m_name->GetSession()->GetWeb()->GetWeb();
    const std::wstring path = m_name->GetPath();
    auto object = is_made_anew ? nullptr : m_name->GetObject();
    if (object == nullptr)
        object = FindObject(*web, path, SharePoint::Web::BindObjectType::any);
    if (object == nullptr)
        object = web->CreateFile(path);
    CHECK_THROW(object->AsFile() != nullptr, Exception(L"A folder has this name"));
    const bool is_strangers = is_made_anew && object->GetInformation()._size != 0;
    if (is_strangers)
        m_name->TellOfStrangersFile();
    CHECK_THROW(!is_strangers,
                Exception(L"Somebody else has meanwhile saved a file of this name: save again to replace it, or choose "
                          L"another name"));
    m_missing_file = MissingFile::IsCreated;
    m_name->SetObject(object);
}

void CacheCallback::DropStreams() noexcept {
    TRACE_FUNCTION();
    m_download.reset();
    m_upload.reset();
    m_pos = 0;
}
