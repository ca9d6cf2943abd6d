#pragma once

#include "afs/Name.h"

/// An open file. Its bytes are an entry of the host's files cache, which all open files of a location share. The entry
/// accesses the service through a `CacheCallback`.
class File final : public Qorv::CoClass<File, Qorv::IAFS_File> {
public:
    static constexpr IID ClassId = {0xc72e3517, 0xbeeb, 0x464b, {0xac, 0xad, 0xd5, 0x4c, 0x68, 0x60, 0xf2, 0x45}};

    /// Opens a file as the flags (`Qorv::AFS_OpenFileFlags`) say.
    static HRESULT CreateAndOpenFile(Name* name, ULONG flags, Qorv::IQorv_ErrorDetails* out_error_details,
                                     Qorv::IQorv_CancelFlag* cancel_flag, Qorv::ComPtr<File>& out_file);

    /// For `CreateAndOpenFile` and `Clone`: creates a file without an entry.
    File(Name* i_name, ULONG i_flags, ULONGLONG i_pos = 0);
    /// Closes the file if its user did not; the cache then reports a failed upload. After a cancelled `Close` nothing
    /// is uploaded: the cache keeps the changes.
    ~File();

    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name** out_name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_OpenFlags(ULONG* out_flags) noexcept override;
    HRESULT STDMETHODCALLTYPE get_IoMode(ULONG* out_mode) noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(Qorv::IAFS_File** out_file) noexcept override;
    HRESULT STDMETHODCALLTYPE IsCloneOf(Qorv::IAFS_File* i_file, VARIANT_BOOL* out_is_clone) noexcept override;
    HRESULT STDMETHODCALLTYPE Read(void* data, ULONG size, ULONG* out_read, Qorv::IQorv_ErrorDetails* out_error_details,
                                   Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* out_written,
                                    Qorv::IQorv_ErrorDetails* out_error_details,
                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE SetPos(LONGLONG offset, ULONG origin) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPos(ULONGLONG* out_pos) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size) noexcept override;
    HRESULT STDMETHODCALLTYPE Flush(Qorv::IQorv_ErrorDetails* out_error_details,
                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Reopen(ULONG new_open_flags, Qorv::IQorv_ErrorDetails* out_error_details,
                                     Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE GetStream(IStream** out_stream) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Prop(Qorv::PCStr i_name, VARIANT* out_value) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Prop(Qorv::PCStr i_name, const VARIANT& i_value) noexcept override;
    HRESULT STDMETHODCALLTYPE Exec(Qorv::PCStr i_command, VARIANT* io_argument) noexcept override;
    /// A second call does nothing.
    HRESULT STDMETHODCALLTYPE Close(Qorv::IQorv_ErrorDetails* out_error_details,
                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;

private:
    // Static because the texts of their checks are part of the log and say "self".
    static HRESULT CheckDisposition(File* self);
    static void CheckReplaced(File* self);
    static void QueryEntry(File* self);
    static void RefreshName(File* self);
    static HRESULT CreateEntry(File* self, Name* i_host_name, Qorv::IQorv_ErrorDetails* out_error_details,
                               Qorv::IQorv_CancelFlag* cancel_flag);

    ULONG Disposition() const noexcept;
    HRESULT CloseEntry(Qorv::IQorv_ErrorDetails* out_error_details, Qorv::IQorv_CancelFlag* cancel_flag) noexcept;

    Qorv::ComPtr<Name> m_name;
    ULONG m_flags;
    ULONGLONG m_pos;
    Qorv::ComPtr<Qorv::IAFS_FileCache> m_cache; ///< Null when closed.
    bool m_is_close_canceled = false;
};
