#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"
#include "services/EntryFiles.h"
#include "services/NameText.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace DevHost {

class FilesCache;

/// One file's bytes in the files cache.
///
/// They are downloaded when first needed, from the start up to what is read. The first change needs all of them, since
/// the service only takes complete files; so a changed entry is always complete. One thread at a time.
class CacheEntry final : public Qorv::CoClass<CacheEntry, Qorv::IAFS_FileCache> {
public:
    /// `io_owner` must live until `Close`.
    CacheEntry(FilesCache& io_owner, EntryFiles i_files) : m_owner(&io_owner), m_files(std::move(i_files)) {}
    ~CacheEntry();

    /// Binds the entry to a remote file and the means to reach it; replaces an earlier binding.
    void Bind(Qorv::IAFS_Name* i_name, Qorv::IAFS_FileCacheCallbacks* i_callback);

    // Ways to begin an entry; the last two need it to be bound.
    void StartWithKeptBytes();                      ///< Changed: with the content of its files.
    void StartWithRemoteFile(std::uint64_t i_size); ///< With the announced size in bytes.
    void StartEmpty();                              ///< Changed: even an empty document is uploaded.

    std::wstring Location() const { return LocationOf(m_name); }
    const std::filesystem::path& Path() const noexcept { return m_files.BytesPath(); }
    bool IsChanged() const noexcept { return m_is_changed; }
    /// Whether `Close` keeps the bytes for a later run.
    bool IsKeptByClose() const noexcept { return m_has_note; }
    /// The files that have the entry open; only for comparing pointers.
    std::set<const Qorv::IAFS_File*>& OpenFiles() noexcept { return m_open_files; }
    /// The bytes are a copy of something else of the user's: when they cannot be uploaded and `i_still_stands` says so,
    /// they are not kept.
    void SetOriginal(std::function<bool()> i_still_stands) { m_original_stands = std::move(i_still_stands); }
    /// Treats the entry's bytes as the service's.
    void ForgetChanges();

    HRESULT STDMETHODCALLTYPE Read(ULONGLONG i_pos, void* o_data, ULONG i_size, ULONG* o_read,
                                   Qorv::IQorv_ErrorDetails* o_details,
                                   Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Write(ULONGLONG i_pos, const void* i_data, ULONG i_size, ULONG* o_written,
                                    Qorv::IQorv_ErrorDetails* o_details,
                                    Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Size(ULONGLONG* o_size) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG i_size, Qorv::IQorv_ErrorDetails* o_details,
                                      Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Flush(Qorv::IQorv_ErrorDetails* o_details,
                                    Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE get_TempFileName(BSTR* o_path) noexcept override;

    // Ways to end an entry: afterwards it returns E_UNEXPECTED. All release the plug-in's objects.
    void Remove();
    std::filesystem::path MoveToReplaced();
    /// Changed bytes are kept for a later run; others are removed, including those of a new document that was never
    /// written.
    void Close();

private:
    void Unbind();
    void RequireOpen();
    void FetchUpTo(std::uint64_t i_end, Qorv::IQorv_CancelFlag* i_cancel_flag);
    void FetchPiece(std::vector<BYTE>& io_piece, Qorv::IQorv_CancelFlag* i_cancel_flag);
    void BeginChange();
    void WriteNote();
    void Upload(Qorv::IQorv_CancelFlag* i_cancel_flag);
    void Send(Qorv::IQorv_CancelFlag* i_cancel_flag);

    FilesCache* m_owner;
    EntryFiles m_files;
    Qorv::ComPtr<Qorv::IAFS_Name> m_name;
    Qorv::ComPtr<Qorv::IAFS_FileCacheCallbacks> m_callback;
    std::set<const Qorv::IAFS_File*> m_open_files;
    std::uint64_t m_size = 0;
    std::uint64_t m_fetched = 0; ///< This many bytes from the start are here.
    std::function<bool()> m_original_stands;
    bool m_is_complete = false; ///< All bytes are here.
    bool m_is_changed = false;  ///< They differ from the service's.
    bool m_has_note = false;    ///< They are changed, and a note on disk says whose they are.
};

} // namespace DevHost
