#include "host/RemoteFile.h"

namespace DevHost {

RemoteFile::RemoteFile(Qorv::IAFS_FileSys& i_file_system, FilesCache& i_cache, Qorv::IAFS_Name* i_name, ULONG i_flags,
                       const Operation& i_operation)
    : m_operation(i_operation), m_is_written((i_flags & Qorv::AFS_OpenFile_Write) != 0), m_cache(&i_cache) {
    m_operation.Check(i_file_system.OpenFile(i_name, i_flags, m_operation.Details(), m_operation.Cancel(), &m_file));
}

RemoteFile::~RemoteFile() {
    if (m_file == nullptr)
        return;
    if (m_is_written)
        m_cache->Discard(m_file);
    m_file->Close(nullptr, nullptr);
}

ULONG RemoteFile::Read(void* o_data, ULONG i_size) {
    ULONG read = 0;
    m_operation.Check(m_file->Read(o_data, i_size, &read, m_operation.Details(), m_operation.Cancel()));
    return read;
}

void RemoteFile::Write(const void* i_data, ULONG i_size) {
    ULONG written = 0;
    m_operation.Check(m_file->Write(i_data, i_size, &written, m_operation.Details(), m_operation.Cancel()));
    if (written != i_size)
        throw Failure(E_FAIL, L"The files cache accepts no more bytes");
}

void RemoteFile::SetOriginal(std::function<bool()> i_still_stands) {
    m_cache->SetOriginal(m_file, std::move(i_still_stands));
}

void RemoteFile::Close() {
    const HRESULT result = m_file->Close(m_operation.Details(), m_operation.Cancel());
    if (result != Qorv::ErrorCanceled) // A close that was canceled has not happened.
        m_file.Reset();
    m_operation.Check(result);
}

} // namespace DevHost
