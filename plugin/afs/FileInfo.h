#pragma once

#include "afs/Name.h"

/// What is known about a file or folder: the metadata of the object that the name is bound to.
class FileInfo final : public Qorv::CoClass<FileInfo, Qorv::IAFS_FileInfo> {
public:
    /// Binds the name. Throws E_INVALIDARG if nothing is there.
    explicit FileInfo(Name* i_name);
    ~FileInfo();

    HRESULT STDMETHODCALLTYPE get_Title(BSTR* out_title) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Attributes(ULONG* out_attributes) noexcept override;
    /// E_INVALIDARG for a folder.
    HRESULT STDMETHODCALLTYPE get_Size(ULONGLONG* out_size) noexcept override;
    /// 0: the service has no creation time.
    HRESULT STDMETHODCALLTYPE get_CreationTime(ULONGLONG* out_time) noexcept override;
    /// 0 for a folder.
    HRESULT STDMETHODCALLTYPE get_LastWriteTime(ULONGLONG* out_time) noexcept override;
    /// The same as the time of the last write, the only one that the service has.
    HRESULT STDMETHODCALLTYPE get_LastAccessTime(ULONGLONG* out_time) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Prop(Qorv::PCStr i_name, VARIANT* out_value) noexcept override;

private:
    Qorv::ComPtr<Name> m_name;
};
