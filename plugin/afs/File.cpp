#include "afs/File.h"

#include "afs/Session.h"
#include "core/host/Cancellation.h"
#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "qorv/Values.h"

#include <limits>

namespace {

constexpr ULONG access_mask = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write;
constexpr wchar_t temp_file_name[] = L"TempFileName";

} // namespace

File::File(Name* i_name, ULONG i_flags, ULONGLONG i_pos) : m_name(i_name), m_flags(i_flags), m_pos(i_pos) {
    TRACE_FUNCTION();
    m_name->FollowMoves();
}

File::~File() {
    TRACE_FUNCTION();
    if (m_cache == nullptr)
        return;
    AddRef(); // The cache may take a reference during the call: releasing it must not delete this object again.
    // A user who cancelled the close does not want to wait for an upload now: the cache keeps the changes for its next
    // flush.
    const auto cancel_flag = m_is_close_canceled ? Qorv::Create<CanceledFlag>() : nullptr;
    CloseEntry(nullptr, cancel_flag);
}

HRESULT STDMETHODCALLTYPE File::get_Name(Qorv::IAFS_Name** out_name) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_name != nullptr, E_POINTER);
    *out_name = Qorv::ComPtr(m_name).Detach();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::get_OpenFlags(ULONG* out_flags) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_flags != nullptr, E_POINTER);
    *out_flags = m_flags;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::get_IoMode(ULONG* out_mode) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_mode != nullptr, E_POINTER);
    *out_mode = m_flags & access_mask;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::Clone(Qorv::IAFS_File** out_file) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_file != nullptr, E_POINTER);
        *out_file = nullptr;
        CHECK_RETURN(m_flags & Qorv::AFS_OpenFile_Read, E_INVALIDARG);
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        auto clone = Qorv::Create<File>(m_name, m_flags, m_pos);
        CHECK_RETURN(clone != nullptr, E_OUTOFMEMORY);
        // The cache counts the open files of an entry, so it has to return the entry itself.
        CHECK_HRESULT(m_name->GetSession()->GetFilesCache()->QueryCache(clone, m_flags, &clone->m_cache));
        CHECK_RETURN(clone->m_cache == m_cache, E_UNEXPECTED);
        *out_file = clone.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::IsCloneOf(Qorv::IAFS_File* i_file, VARIANT_BOOL* out_is_clone) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_is_clone != nullptr, E_POINTER);
    *out_is_clone = VARIANT_FALSE;
    CHECK_RETURN(i_file != nullptr, E_INVALIDARG);
    const auto file = Qorv::OwnObject<File>(i_file);
    if (file != nullptr && m_cache != nullptr && file->m_cache == m_cache)
        *out_is_clone = VARIANT_TRUE;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::Read(void* data, ULONG size, ULONG* out_read,
                                     Qorv::IQorv_ErrorDetails* out_error_details,
                                     Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_read != nullptr, E_POINTER);
        *out_read = 0;
        CHECK_RETURN(data != nullptr, E_POINTER);
        CHECK_RETURN(m_flags & Qorv::AFS_OpenFile_Read, E_INVALIDARG);
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        ULONG size_read = 0;
        CHECK_HRESULT(m_cache->Read(m_pos, data, size, &size_read, out_error_details, cancel_flag));
        m_pos += size_read;
        *out_read = size_read;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::Write(const void* data, ULONG size, ULONG* out_written,
                                      Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_written != nullptr, E_POINTER);
        *out_written = 0;
        CHECK_RETURN(data != nullptr, E_INVALIDARG);
        CHECK_RETURN(m_flags & Qorv::AFS_OpenFile_Write, E_INVALIDARG);
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        ULONG size_written = 0;
        CHECK_HRESULT(m_cache->Write(m_pos, data, size, &size_written, out_error_details, cancel_flag));
        m_pos += size_written;
        *out_written = size_written;
        m_is_close_canceled = false;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::SetPos(LONGLONG offset, ULONG origin) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_THROW(origin == Qorv::AFS_Origin_Begin || origin == Qorv::AFS_Origin_Current ||
                        origin == Qorv::AFS_Origin_End,
                    Exception(L"Unsupported origin type"));
        ULONGLONG start = 0;
        if (origin == Qorv::AFS_Origin_Current)
            start = m_pos;
        if (origin == Qorv::AFS_Origin_End) {
            CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
            ULONGLONG size = 0;
            CHECK_HRESULT(m_cache->get_Size(&size));
            start = size;
        }
        const ULONGLONG distance = static_cast<ULONGLONG>(offset);
        if (offset < 0)
            CHECK_RETURN(0 - distance <= start, E_INVALIDARG);
        else
            CHECK_RETURN(distance <= std::numeric_limits<ULONGLONG>::max() - start, E_INVALIDARG);
        m_pos = start + distance; // Modulo 2^64, so a negative distance goes back.
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::GetPos(ULONGLONG* out_pos) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_pos != nullptr, E_POINTER);
    *out_pos = m_pos;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::SetSize(ULONGLONG new_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                        Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(m_flags & Qorv::AFS_OpenFile_Write, E_INVALIDARG);
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        CHECK_HRESULT(m_cache->SetSize(new_size, out_error_details, cancel_flag));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::GetSize(ULONGLONG* out_size) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_size != nullptr, E_POINTER);
    CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
    CHECK_HRESULT(m_cache->get_Size(out_size));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::Flush(Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        m_name->AcceptReplacing();
        CHECK_HRESULT(m_cache->Flush(out_error_details, cancel_flag));
        m_is_close_canceled = false;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::Reopen(ULONG new_open_flags, Qorv::IQorv_ErrorDetails* out_error_details,
                                       Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN((new_open_flags & access_mask) != 0, E_INVALIDARG);
        CHECK_RETURN_GUARDED(m_name->GetObject() != nullptr, m_name->GetObject()->AsFile() != nullptr, E_INVALIDARG);
        CHECK_THROW(m_name->GetSession()->GetFilesCache() != nullptr, Exception(L"File cache is not found"));
        CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
        CHECK_HRESULT(m_name->GetSession()->GetFilesCache()->CheckForReopenFile(this, new_open_flags));
        m_flags = new_open_flags;
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE File::GetStream(IStream**) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE File::get_Prop(Qorv::PCStr i_name, VARIANT* out_value) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_value != nullptr, E_POINTER);
    CHECK_RETURN(i_name != nullptr, E_INVALIDARG);
    CHECK_RETURN(EqualsNoCase(i_name, temp_file_name), E_INVALIDARG);
    CHECK_RETURN(m_cache != nullptr, E_UNEXPECTED);
    Qorv::Bstr path;
    CHECK_HRESULT(m_cache->get_TempFileName(&path));
    Qorv::Variant value(std::move(path));
    VARIANT& variant_bstr = value.m_value;
    CHECK_HRESULT(VariantCopy(out_value, &variant_bstr));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE File::put_Prop(Qorv::PCStr, const VARIANT&) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_INVALIDARG);
}

HRESULT STDMETHODCALLTYPE File::Exec(Qorv::PCStr, VARIANT*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_INVALIDARG);
}

HRESULT STDMETHODCALLTYPE File::Close(Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        m_is_close_canceled = true;
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        m_is_close_canceled = false;
        if (m_cache != nullptr)
            CHECK_HRESULT(CloseEntry(out_error_details, cancel_flag));
        return TRACE_RESULT(S_OK);
    };
}

/// The file is closed whatever the cache returns.
HRESULT File::CloseEntry(Qorv::IQorv_ErrorDetails* out_error_details, Qorv::IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    const auto cache = std::move(m_cache);
    CHECK_HRESULT(m_name->GetSession()->GetFilesCache()->CloseCache(this, cache, out_error_details, cancel_flag));
    return TRACE_RESULT(S_OK);
}
