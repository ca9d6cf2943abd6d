// How a file is opened: the flags, the remote file, and the entry of the host's files cache.

#include "afs/CacheCallback.h"
#include "afs/File.h"
#include "afs/ObjectLookup.h"
#include "afs/Session.h"
#include "core/host/Cancellation.h"
#include "core/trace/Check.h"
#include "core/trace/LogText.h"

#include <bit>

namespace {

constexpr HRESULT file_not_found = static_cast<HRESULT>(0x80070002); // HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)
constexpr HRESULT file_exists = static_cast<HRESULT>(0x80070050);    // HRESULT_FROM_WIN32(ERROR_FILE_EXISTS)

} // namespace

HRESULT File::CreateAndOpenFile(Name* name, ULONG flags, Qorv::IQorv_ErrorDetails* out_error_details,
                                Qorv::IQorv_CancelFlag* cancel_flag, Qorv::ComPtr<File>& out_file) {
    TRACE_FUNCTION();
    CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
    const bool is_bound_before = name->GetObject() != nullptr;
    const auto self = Qorv::Create<File>(name, flags);
    CHECK_RETURN(self != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(CheckDisposition(self));
    CHECK_THROW(self->m_name->GetSession()->GetFilesCache() != nullptr, Exception(L"File cache is not found"));
    if (self->Disposition() == Qorv::AFS_OpenFile_CreateAlways)
        CheckReplaced(self);
    QueryEntry(self);
    if (self->m_cache == nullptr) {
        if (is_bound_before) {
            RefreshName(self);
            CHECK_HRESULT(CheckDisposition(self)); // The file may have been deleted meanwhile.
        }
        CHECK_HRESULT(CreateEntry(self, name, out_error_details, cancel_flag));
    } else if (self->Disposition() == Qorv::AFS_OpenFile_CreateAlways) {
        CHECK_HRESULT(self->m_cache->SetSize(0, out_error_details, cancel_flag));
    }
    out_file = self;
    return TRACE_RESULT(S_OK);
}

ULONG File::Disposition() const noexcept {
    TRACE_FUNCTION();
    return m_flags & Qorv::AFS_OpenFile_DispositionMask;
}

HRESULT File::CheckDisposition(File* self) {
    TRACE_FUNCTION();
    CHECK_RETURN(self->m_flags & (Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write), E_INVALIDARG);
    CHECK_THROW(std::popcount(self->Disposition()) <= 1,
                Exception(L"Multiple create disposition modes are not supported"));
    switch (self->Disposition()) {
    case Qorv::AFS_OpenFile_CreateNew: // Only the name's own record counts: the service is not asked.
        CHECK_RETURN(self->m_name->GetObject() == nullptr, file_exists);
        break;
    case Qorv::AFS_OpenFile_CreateAlways: // The misspelling "writting" is deliberate.
        CHECK_THROW(self->m_flags & Qorv::AFS_OpenFile_Write,
                    Exception(L"Mode CreateAlways can be used only for writting"));
        break;
    case Qorv::AFS_OpenFile_OpenExisting:
        CHECK_RETURN(self->m_name->BindObject(SharePoint::Web::BindObjectType::file) != nullptr, file_not_found);
        break;
    default:
        break;
    }
    return TRACE_RESULT(S_OK);
}

/// A file to replace need not exist, but there must not be a folder in its place. The lookup also gives the name the
/// service's spelling, so that different spellings share one entry.
void File::CheckReplaced(File* self) {
    TRACE_FUNCTION();
    const auto object = self->m_name->BindObject();
    CHECK_THROW(object == nullptr || object->AsFile() != nullptr, Exception(L"A folder has this name"));
}

/// Takes the entry that the location's other open files share, if there is one.
void File::QueryEntry(File* self) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_FileCache> cache;
    const HRESULT result = self->m_name->GetSession()->GetFilesCache()->QueryCache(self, self->m_flags, &cache);
    if (SUCCEEDED(result))
        self->m_cache = cache;
    else
        TRACE_TEXT(FormatLogText(L"ERROR: QueryCache failed with result '%d' and returned %lscache object",
                                 static_cast<int>(result), cache != nullptr ? L"" : L"no "));
}

/// The record of a name that was bound earlier may be out of date, and an old size would cut off what is read. If the
/// name's object is gone, an unbound name takes its place, because a bound name stays bound.
void File::RefreshName(File* self) {
    TRACE_FUNCTION();
    const bool is_replaced = self->Disposition() == Qorv::AFS_OpenFile_CreateAlways;
    if (!is_replaced && !RefreshObject(*self->m_name->GetObject()))
        self->m_name = self->m_name->CreateUnbound();
}

/// `i_host_name` is the name that the file was opened by, even if another has taken its place.
HRESULT File::CreateEntry(File* self, Name* i_host_name, Qorv::IQorv_ErrorDetails* out_error_details,
                          Qorv::IQorv_CancelFlag* cancel_flag) {
    TRACE_FUNCTION();
    const bool is_replaced = self->Disposition() == Qorv::AFS_OpenFile_CreateAlways;
    const bool is_existing = self->Disposition() == Qorv::AFS_OpenFile_OpenExisting;
    const bool may_create = (self->m_flags & Qorv::AFS_OpenFile_Write) != 0 && !is_existing;
    // Accepts any kind of object: a new file must not take the place of a folder.
    const bool is_missing = !is_replaced && may_create && self->m_name->BindObject() == nullptr;
    using MissingFile = CacheCallback::MissingFile;
    const auto missing_file = is_missing   ? MissingFile::IsCreatedAnew
                              : may_create ? MissingFile::IsCreated
                                           : MissingFile::Fails;
    Name* const lost_name = self->m_name == i_host_name ? nullptr : i_host_name;
    const auto callback = Qorv::Create<CacheCallback>(self->m_name, missing_file, lost_name);
    CHECK_RETURN(callback != nullptr, E_OUTOFMEMORY);

    ULONGLONG size = 0;
    if (!is_replaced && !is_missing)
        CHECK_HRESULT(callback->GetSize(&size, out_error_details, cancel_flag));
    CHECK_HRESULT(self->m_name->GetSession()->GetFilesCache()->CreateNewCache(self, callback, self->m_flags, size,
                                                                              VARIANT_FALSE, 0, 0, &self->m_cache));
    CHECK_RETURN(self->m_cache != nullptr, E_UNEXPECTED);
    return TRACE_RESULT(S_OK);
}
