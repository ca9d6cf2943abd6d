// Files and folders.

#include "afs/EnumFolder.h"
#include "afs/File.h"
#include "afs/FileInfo.h"
#include "afs/FileSystem.h"
#include "afs/LocalName.h"
#include "afs/Name.h"
#include "afs/ObjectLookup.h"
#include "afs/Session.h"
#include "core/host/Cancellation.h"
#include "http/HttpException.h"

using Qorv::ComPtr;
using Qorv::IQorv_CancelFlag;
using Qorv::IQorv_ErrorDetails;

namespace {

/// Binds a name to the object that was moved to a path. A failure here is not a failure of the move, and the error says
/// so. The name refers to the new place even then, because saving by the old name would create a second file.
void BindMovedObject(Name& io_name, const std::wstring& i_path) {
    TRACE_FUNCTION();
    const std::wstring old_url = io_name.GetUrl();
    const std::wstring new_url = old_url.substr(0, old_url.size() - io_name.GetPath().size()) + i_path;
    io_name.GetSession()->GetFileSystem()->GetOpenNames().Move(old_url, new_url);
    io_name.FollowMove(old_url, new_url); // For a name that no file is open by.
    HRESULT result = S_OK;
    FailureReason reason;
    try {
        const auto web = io_name.GetSession()->GetWeb()->GetWeb();
        io_name.SetObject(FindObject(*web, i_path, SharePoint::Web::BindObjectType::any));
    } catch (const HResultException& e) {
        result = e.m_hresult;
        reason = e.Reason();
    } catch (const Exception& e) {
        result = E_FAIL;
        reason = e.Reason();
    }
    reason.words.insert(0, L"The item was moved, but its new location cannot be read: ");
    CHECK_THROW(SUCCEEDED(result), HResultException(reason.words, result, reason));
}

/// Copies, moves or renames. If something already exists at the new place, the error says what.
template <typename Relocate>
void RelocateTo(const std::wstring& i_path, Relocate&& i_relocate) {
    TRACE_FUNCTION();
    try {
        i_relocate(i_path);
    } catch (const HttpException& e) {
        FailureReason reason = e.Reason();
        if (!reason.summary.starts_with(L"to/conflict"))
            throw;
        reason.words = i_path + L" is there already. " + reason.words;
        throw Exception(e.Message(), reason);
    }
}

} // namespace

HRESULT STDMETHODCALLTYPE FileSystem::EnumFolder(Qorv::IAFS_Name* name, ULONG, IQorv_ErrorDetails* out_error_details,
                                                 IQorv_CancelFlag* cancel_flag,
                                                 Qorv::IAFS_EnumFolder** out_enum) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_enum != nullptr, E_POINTER);
        *out_enum = nullptr;
        GET_LOCAL_NAME(name);
        auto enum_folder = Qorv::Create<::EnumFolder>(local_name);
        CHECK_RETURN(enum_folder != nullptr, E_OUTOFMEMORY);
        *out_enum = enum_folder.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::OpenFile(Qorv::IAFS_Name* name, ULONG flags,
                                               IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag,
                                               Qorv::IAFS_File** out_file) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_file != nullptr, E_POINTER);
        *out_file = nullptr;
        GET_LOCAL_NAME(name);
        ComPtr<File> file;
        CHECK_HRESULT(File::CreateAndOpenFile(local_name, flags, out_error_details, cancel_flag, file));
        *out_file = file.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::CreateFolder(Qorv::IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                                   IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        const auto web = local_name->GetSession()->GetWeb()->GetWeb();
        local_name->SetObject(web->CreateFolder(local_name->GetPath()));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::Move(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                           IQorv_ErrorDetails* out_error_details,
                                           IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        GET_LOCAL_NAME(new_name);
        CHECK_RETURN(AreOfSameUser(*local_name, *local_new_name), E_INVALIDARG);
        const auto object = local_name->BindObject(SharePoint::Web::BindObjectType::file);
        const auto file = object != nullptr ? object->AsFile() : nullptr;
        CHECK_RETURN(file != nullptr, E_INVALIDARG);
        const std::wstring new_path = local_new_name->GetPath();
        RelocateTo(new_path, [&](const std::wstring& i_path) { file->MoveTo(i_path); });
        BindMovedObject(*local_name, new_path);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::Copy(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                           IQorv_ErrorDetails* out_error_details,
                                           IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        GET_LOCAL_NAME(new_name);
        CHECK_RETURN(AreOfSameUser(*local_name, *local_new_name), E_INVALIDARG);
        const auto object = local_name->BindObject(SharePoint::Web::BindObjectType::file);
        const auto file = object != nullptr ? object->AsFile() : nullptr;
        CHECK_RETURN(file != nullptr, E_INVALIDARG);
        RelocateTo(local_new_name->GetPath(), [&](const std::wstring& i_path) { file->CopyTo(i_path); });
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::Rename(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                             IQorv_ErrorDetails* out_error_details,
                                             IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        GET_LOCAL_NAME(new_name);
        CHECK_RETURN(AreOfSameUser(*local_name, *local_new_name), E_INVALIDARG);
        const auto object = local_name->BindObject();
        CHECK_RETURN(object != nullptr, E_INVALIDARG);
        const std::wstring new_path = local_new_name->GetPath();
        RelocateTo(new_path, [&](const std::wstring& i_path) { object->Rename(i_path); });
        BindMovedObject(*local_name, new_path);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::Delete(Qorv::IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                             IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        const auto object = local_name->BindObject();
        CHECK_RETURN(object != nullptr, E_INVALIDARG);
        object->Delete();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::GetFileInfo(Qorv::IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                                  IQorv_CancelFlag* cancel_flag,
                                                  Qorv::IAFS_FileInfo** out_info) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(out_info != nullptr, E_POINTER);
        *out_info = nullptr;
        GET_LOCAL_NAME(name);
        auto info = Qorv::Create<FileInfo>(local_name);
        CHECK_RETURN(info != nullptr, E_OUTOFMEMORY);
        *out_info = info.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::GetVolumeSpace(Qorv::IAFS_Name*, ULONGLONG*, ULONGLONG*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}
