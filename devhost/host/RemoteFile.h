#pragma once

#include "host/Operation.h"
#include "qorv/Afs.h"
#include "services/FilesCache.h"

#include <functional>
#include <string>

namespace DevHost {

/// An open file of the plug-in, read or written from beginning to end. Throws a `Failure`.
class RemoteFile {
public:
    RemoteFile(Qorv::IAFS_FileSys& i_file_system, FilesCache& i_cache, Qorv::IAFS_Name* i_name, ULONG i_flags,
               const Operation& i_operation);
    /// A file that is destroyed without being closed is abandoned: nothing is uploaded.
    ~RemoteFile();
    RemoteFile(const RemoteFile&) = delete;
    RemoteFile& operator=(const RemoteFile&) = delete;

    /// 0 at the end.
    ULONG Read(void* o_data, ULONG i_size);
    void Write(const void* i_data, ULONG i_size);
    /// Marks the written bytes as a copy of something else. If they cannot be uploaded and the original still exists,
    /// they are not kept.
    void SetOriginal(std::function<bool()> i_still_stands);
    /// From now on the file keeps its changes even if it is not closed.
    void KeepOnFailure() noexcept { m_is_written = false; }
    /// Uploads the written bytes.
    void Close();

private:
    const Operation& m_operation;
    bool m_is_written;
    Qorv::ComPtr<FilesCache> m_cache;
    Qorv::ComPtr<Qorv::IAFS_File> m_file;
};

} // namespace DevHost
