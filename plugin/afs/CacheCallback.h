#pragma once

#include "afs/Name.h"

#include <optional>

/// How the host's files cache accesses one remote file: one download or upload at a time, from start to end.
///
/// A failed read, an upload that breaks off, or a cancelled call ends the transfer. It then restarts at position 0, and
/// the service keeps the file that it had.
class CacheCallback final : public Qorv::CoClass<CacheCallback, Qorv::IAFS_FileCacheCallbacks> {
public:
    /// What an upload does if the file is missing. A file that was missing when it was opened must still be missing or
    /// empty (`IsCreatedAnew`).
    enum class MissingFile { Fails, IsCreated, IsCreatedAnew };

    /// `i_lost_name` is given if its object is gone and `i_name` is an unbound substitute for it. Uploads bind it to
    /// the new file.
    CacheCallback(Name* i_name, MissingFile i_missing_file, Name* i_lost_name = nullptr);
    ~CacheCallback();

    /// One forward-only stream: each read must start where the last one ended.
    HRESULT STDMETHODCALLTYPE Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read,
                                   Qorv::IQorv_ErrorDetails* out_error_details,
                                   Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Writes all of the data, or fails and ends the upload.
    HRESULT STDMETHODCALLTYPE Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                    Qorv::IQorv_ErrorDetails* out_error_details,
                                    Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Records the size that the next upload announces.
    HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// The remote file's size. The next download must have this size.
    HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size, Qorv::IQorv_ErrorDetails* out_error_details,
                                      Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE BeginWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                         Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE EndWrite(Qorv::IQorv_ErrorDetails* out_error_details,
                                       Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;

private:
    struct Upload {
        std::shared_ptr<SharePoint::Object> object;
        std::shared_ptr<SharePoint::File> file; ///< The object's.
        Http::Request request;
        ULONGLONG size; ///< As announced.
    };
    class Transfer;

    /// Whether the caller has cancelled. If so, also abandons the transfer: both streams are dropped.
    bool IsCanceled(Qorv::IQorv_CancelFlag* cancel_flag) noexcept;
    void OpenDownload();
    void CheckFileSize(ULONGLONG i_size, bool i_asks_anew);
    void CreateMissingFile();
    void WriteUpload(const void* data, ULONG size);
    void DropStreams() noexcept;

    Qorv::ComPtr<Name> m_name;
    Qorv::ComPtr<Name> m_lost_name; ///< Usually null.
    MissingFile m_missing_file;
    ULONGLONG m_pos = 0;
    std::optional<ULONGLONG> m_size;      ///< The size that the cache last set.
    std::optional<ULONGLONG> m_told_size; ///< The file size that the cache was given.
    std::optional<Http::Response> m_download;
    std::optional<Upload> m_upload;
};
