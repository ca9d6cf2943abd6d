#include "afs/FileInfo.h"

#include "core/trace/Check.h"
#include "qorv/Values.h"

FileInfo::FileInfo(Name* i_name) : m_name(i_name) {
    TRACE_FUNCTION();
    CHECK_THROW(m_name->BindObject() != nullptr, HResultException(E_INVALIDARG));
}

FileInfo::~FileInfo() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE FileInfo::get_Title(BSTR* out_title) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_title != nullptr, E_POINTER);
    *out_title = Qorv::Bstr(m_name->GetObject()->GetInformation()._name).Detach();
    CHECK_RETURN(*out_title, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_Attributes(ULONG* out_attributes) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_attributes != nullptr, E_POINTER);
    // The host's own flag, not the platform's for directories.
    *out_attributes = m_name->GetObject()->GetInformation()._is_folder ? Qorv::AFS_Attribute_Folder : 0UL;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_Size(ULONGLONG* out_size) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_size != nullptr, E_POINTER);
    CHECK_RETURN(!m_name->GetObject()->GetInformation()._is_folder, E_INVALIDARG);
    *out_size = m_name->GetObject()->GetInformation()._size;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_CreationTime(ULONGLONG* out_time) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_time != nullptr, E_POINTER);
    *out_time = m_name->GetObject()->GetInformation()._created;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_LastWriteTime(ULONGLONG* out_time) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_time != nullptr, E_POINTER);
    *out_time = m_name->GetObject()->GetInformation()._modified;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_LastAccessTime(ULONGLONG* out_time) noexcept {
    TRACE_FUNCTION();
    CHECK_HRESULT(get_LastWriteTime(out_time));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileInfo::get_Prop(Qorv::PCStr, VARIANT*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}
