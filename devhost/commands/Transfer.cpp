#include "commands/Transfer.h"

#include "commands/Item.h"
#include "services/NameText.h"

namespace DevHost {
namespace {

std::unique_ptr<RemoteFile> Open(Shell& io_shell, Qorv::IAFS_Name* i_name, ULONG i_flags,
                                 const Operation& i_operation) {
    try {
        return std::make_unique<RemoteFile>(io_shell.FileSystem(), io_shell.Plugin().Cache(), i_name, i_flags,
                                            i_operation);
    } catch (const Failure& failure) {
        const std::wstring path = DisplayPathOf(i_name);
        if (failure.Code() == Qorv::ErrorCanceled ||
            !IsThere(io_shell.FileSystem(), i_name, true, io_shell.Begin(path)))
            throw;
        throw Failure(failure.Code(), path + L" is a folder");
    }
}

} // namespace

std::unique_ptr<RemoteFile> OpenForReading(Shell& io_shell, Qorv::IAFS_Name* i_name, const Operation& i_operation) {
    return Open(io_shell, i_name, Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_OpenExisting, i_operation);
}

std::unique_ptr<RemoteFile> OpenForReplacing(Shell& io_shell, Qorv::IAFS_Name* i_name, const Operation& i_operation) {
    return Open(io_shell, i_name, Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_CreateAlways, i_operation);
}

std::wstring TargetText(const std::wstring& i_location, const std::wstring& i_title) {
    return i_location.ends_with(L'/') ? i_location + i_title : i_location;
}

} // namespace DevHost
