#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"
#include "services/CacheEntry.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace DevHost {

/// Shows the user a notice that isn't a failure.
using NoticeSink = std::function<void(const std::wstring&)>;

/// Told of each piece that a transfer has moved: the bytes so far, and all of them.
using ProgressSink = std::function<void(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total)>;

/// The files cache of one file system: one entry per location, shared by all files that have it open. The entry is
/// removed with its last file, after its changes have been uploaded.
///
/// Changes that cannot be uploaded are kept and sent again with every flush of the cache. Files opened only for reading
/// never show them. A file opened for writing at their location continues with them, even in a later run of the host,
/// or replaces them; then a copy is kept.
///
/// One thread at a time.
class FilesCache final : public Qorv::CoClass<FilesCache, Qorv::IAFS_FilesCache> {
public:
    FilesCache(std::filesystem::path i_folder, NoticeSink i_notice);
    ~FilesCache();

    HRESULT STDMETHODCALLTYPE QueryCache(Qorv::IAFS_File* i_file, ULONG i_flags,
                                         Qorv::IAFS_FileCache** o_cache) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateNewCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCacheCallbacks* i_callback,
                                             ULONG i_flags, ULONGLONG i_size, VARIANT_BOOL i_is_temporary,
                                             ULONG i_reserved1, ULONG i_reserved2,
                                             Qorv::IAFS_FileCache** o_cache) noexcept override;
    HRESULT STDMETHODCALLTYPE FlushAllCaches(Qorv::IQorv_ErrorDetails* o_details, Qorv::IQorv_CancelFlag* i_cancel_flag,
                                             VARIANT_BOOL i_close) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckForReopenFile(Qorv::IAFS_File* i_file, ULONG i_new_flags) noexcept override;
    HRESULT STDMETHODCALLTYPE CloseCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCache* i_cache,
                                         Qorv::IQorv_ErrorDetails* o_details,
                                         Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;

    /// Discards changes made through an open file, whose close then uploads nothing; for a document that could not be
    /// written completely.
    void Discard(Qorv::IAFS_File* i_file);

    /// Without a sink nobody is told.
    void SetProgress(ProgressSink i_progress) { m_progress = std::move(i_progress); }
    /// Call for each piece of an entry that has come or gone.
    void OnTransferred(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total) const;

    /// Marks the bytes written through an open file as a copy (see `CacheEntry::SetOriginal`).
    void SetOriginal(Qorv::IAFS_File* i_file, std::function<bool()> i_still_stands);

    /// The changes of this run and earlier ones that could not be sent and are in no open file.
    std::vector<KeptFile> Kept() const;
    /// Removes kept bytes for good. Throws a `Failure` if another process has them.
    void DropKept(const KeptFile& i_kept);

    /// Call when an entry's changes have reached the service: older kept ones of the same location must not follow.
    void OnUploaded(const CacheEntry& i_entry);

    /// Ends every entry and releases the plug-in's objects; changed bytes stay on the disk.
    void Close();

private:
    using Entry = Qorv::ComPtr<CacheEntry>;

    Entry FindOpen(const std::wstring& i_location) const;
    Entry FindOpenedBy(Qorv::IAFS_File* i_file) const;
    /// The location's newest changed bytes that no file has open, from this run or an earlier one; null if there are
    /// none.
    Entry TakeKept(const std::wstring& i_location);
    Entry TakeKeptForWriting(const std::wstring& i_location, ULONG i_flags);
    /// Turns all kept bytes of a location into plain copies, which are never sent.
    void ReplaceKept(const std::wstring& i_location);
    void Remove(Entry i_entry);

    std::filesystem::path m_folder;
    NoticeSink m_notice;
    ProgressSink m_progress;
    std::vector<Entry> m_entries; ///< Those with open files, and the kept ones of this run.
};

} // namespace DevHost
