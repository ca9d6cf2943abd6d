#pragma once

#include "afs/Name.h"

#include <optional>

/// How the host's files cache reaches one remote file: one download, front to back, or one upload, front to back.
///
/// A transfer that fails, or whose caller gives up, is dropped and everything starts anew at position 0: a dropped
/// upload leaves the file at the service as it was. A call that is refused for its arguments leaves the transfer as it
/// is.
class CacheCallback final : public Qorv::CoClass<CacheCallback, Qorv::IAFS_FileCacheCallbacks> {
public:
    enum class MissingFile { Fails, IsCreated };

    /// What is done about a missing file when an upload begins. `i_is_bound_before`: the name was bound before the file
    /// was opened, so that its record may be an old one.
    CacheCallback(Name* i_name, MissingFile i_missing_file, bool i_is_bound_before);
    ~CacheCallback();

    /// One forward-only stream: the position is the end of the read before.
    HRESULT STDMETHODCALLTYPE Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read,
                                   Qorv::IQorv_ErrorDetails* out_error_details,
                                   Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// All of the data is written, or the upload has failed.
    HRESULT STDMETHODCALLTYPE Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                    Qorv::IQorv_ErrorDetails* out_error_details,
                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Records the size that the next upload announces.
    HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// The remote file's.
    HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE BeginWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                         Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE EndWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                       Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;

    /// Whether nothing is at the location, as the service says now.
    bool IsRemoteMissing();

private:
    struct Upload {
        Http::Request request;
        ULONGLONG size; ///< As announced.
    };

    bool IsCanceled(Qorv::IQorv_CancelFlag* cancel_flag) noexcept;
    std::uint32_t ReadDownload(void* data, ULONG size);
    void WriteUpload(const void* data, ULONG size);
    void CreateMissingFile();
    void DropStreams() noexcept;

    Qorv::ComPtr<Name> m_name;
    MissingFile m_missing_file;
    bool m_is_record_old;
    ULONGLONG m_pos = 0;
    std::optional<ULONGLONG> m_size; ///< As the cache set it last.
    std::optional<Http::Response> m_download;
    std::optional<Upload> m_upload;
};
