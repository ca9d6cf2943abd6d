#pragma once

#include "afs/Name.h"

#include <optional>

/// How the host's files cache reaches one remote file: one download, front to back, or one upload, front to back.
///
/// A read that fails, an upload that breaks off, and a caller who gives up end the transfer: everything starts anew at
/// position 0, and the service keeps the file that it had.
class CacheCallback final : public Qorv::CoClass<CacheCallback, Qorv::IAFS_FileCacheCallbacks> {
public:
    /// What is done about a missing file when an upload begins. One that was missing when it was opened must be
    /// missing, or empty, still (`IsCreatedAnew`).
    enum class MissingFile { Fails, IsCreated, IsCreatedAnew };

    /// `i_lost_name` is given when `i_name` is but an unbound stand-in for it, a name whose object went: uploads bind
    /// it to the new file.
    CacheCallback(Name* i_name, MissingFile i_missing_file, Name* i_lost_name = nullptr);
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
    /// The remote file's. What is read after this has to be a file of this size.
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

    /// Whether the caller has given up. Then the transfer is given up too: both streams are dropped.
    bool IsCanceled(Qorv::IQorv_CancelFlag* cancel_flag) noexcept;
    void OpenDownload();
    void CheckFileSize(ULONGLONG i_size, bool i_asks_anew);
    void CreateMissingFile();
    void WriteUpload(const void* data, ULONG size);
    void DropStreams() noexcept;

    Qorv::ComPtr<Name> m_name;
    Qorv::ComPtr<Name> m_lost_name; ///< Mostly null.
    MissingFile m_missing_file;
    ULONGLONG m_pos = 0;
    std::optional<ULONGLONG> m_size;      ///< As the cache set it last.
    std::optional<ULONGLONG> m_told_size; ///< What the cache takes for the file's size.
    std::optional<Http::Response> m_download;
    std::optional<Upload> m_upload;
};
