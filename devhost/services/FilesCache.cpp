#include "services/FilesCache.h"

#include "base/Failure.h"
#include "base/Unicode.h"
#include "services/ErrorDetails.h"

#include <algorithm>

namespace DevHost {
namespace {

Qorv::ComPtr<Qorv::IAFS_Name> NameOf(Qorv::IAFS_File* i_file) {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    Check(i_file->get_Name(&name), L"Cannot read a file's name");
    return name;
}

/// Whether a file already exists at a name's location. Only a clear answer of the file system counts: a wrong no could
/// empty a file, a wrong yes would download a missing one.
bool HoldsFile(Qorv::IAFS_Name* i_name) {
    Qorv::ComPtr<Qorv::IAFS_FileSys> file_system;
    Check(i_name->get_FileSys(&file_system), L"Cannot read a location");
    Qorv::ComPtr<Qorv::IAFS_FileInfo> info;
    const HRESULT result = file_system->GetFileInfo(i_name, nullptr, nullptr, &info);
    if (result == E_INVALIDARG)
        return false;
    Check(result, L"Cannot look up a location");
    return true;
}

bool IsNewDocument(Qorv::IAFS_Name* i_name, ULONG i_flags, ULONGLONG i_size) {
    if ((i_flags & Qorv::AFS_OpenFile_CreateAlways) != 0)
        return true;
    const bool may_be_new =
        (i_flags & Qorv::AFS_OpenFile_Write) != 0 && (i_flags & Qorv::AFS_OpenFile_OpenExisting) == 0;
    return may_be_new && i_size == 0 && !HoldsFile(i_name);
}

} // namespace

FilesCache::FilesCache(std::filesystem::path i_folder, NoticeSink i_notice)
    : m_folder(std::move(i_folder)), m_notice(std::move(i_notice)) {
    EntryFiles::CleanUp(m_folder);
}

FilesCache::~FilesCache() {
    Close();
}

HRESULT STDMETHODCALLTYPE FilesCache::QueryCache(Qorv::IAFS_File* i_file, ULONG,
                                                 Qorv::IAFS_FileCache** o_cache) noexcept {
    if (o_cache == nullptr || i_file == nullptr)
        return E_POINTER;
    *o_cache = nullptr;
    return Answer([&] {
        const Entry entry = FindOpen(LocationOf(NameOf(i_file)));
        if (entry == nullptr)
            return S_FALSE;
        entry->OpenFiles().insert(i_file);
        *o_cache = Entry(entry).Detach();
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE FilesCache::CreateNewCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCacheCallbacks* i_callback,
                                                     ULONG i_flags, ULONGLONG i_size, VARIANT_BOOL, ULONG, ULONG,
                                                     Qorv::IAFS_FileCache** o_cache) noexcept {
    if (o_cache == nullptr || i_file == nullptr || i_callback == nullptr)
        return E_POINTER;
    *o_cache = nullptr;
    return Answer([&] {
        const auto name = NameOf(i_file);
        const std::wstring location = LocationOf(name);
        Entry entry = FindOpen(location); // Two entries for one file would overwrite each other's uploads.
        if (entry == nullptr) {
            entry = TakeKeptForWriting(location, i_flags);
            const bool is_kept = entry != nullptr;
            if (!is_kept)
                entry = Qorv::Create<CacheEntry>(*this, EntryFiles::Create(m_folder, location));
            entry->Bind(name, i_callback);
            if (!is_kept && IsNewDocument(name, i_flags, i_size))
                entry->StartEmpty();
            else if (!is_kept)
                entry->StartWithRemoteFile(i_size);
            m_entries.push_back(entry);
        } else if ((i_flags & Qorv::AFS_OpenFile_CreateAlways) != 0) {
            Check(entry->SetSize(0, nullptr, nullptr), L"Cannot empty a file");
        }
        entry->OpenFiles().insert(i_file);
        *o_cache = entry.Detach();
    });
}

HRESULT STDMETHODCALLTYPE FilesCache::FlushAllCaches(Qorv::IQorv_ErrorDetails* o_details,
                                                     Qorv::IQorv_CancelFlag* i_cancel_flag, VARIANT_BOOL) noexcept {
    return Answer(o_details, [&] {
        HRESULT first_failure = S_OK;
        std::wstring texts;
        const std::vector<Entry> entries = m_entries; // An upload may remove others.
        for (const Entry& entry : entries) {
            if (std::ranges::find(m_entries, entry.Get(), &Entry::Get) == m_entries.end())
                continue; // Replaced by the upload of another entry.
            const auto said = Qorv::Create<ErrorDetails>();
            const HRESULT result = entry->IsChanged() ? entry->Flush(said, i_cancel_flag) : S_OK;
            if (FAILED(result)) {
                texts += (texts.empty() ? L"" : L". ") + entry->Location() + L": " + said->Text();
                first_failure = FAILED(first_failure) ? first_failure : result;
            } else if (entry->OpenFiles().empty()) {
                Remove(entry);
            }
        }
        if (FAILED(first_failure))
            throw Failure(first_failure, texts);
    });
}

HRESULT STDMETHODCALLTYPE FilesCache::CheckForReopenFile(Qorv::IAFS_File* i_file, ULONG i_new_flags) noexcept {
    const bool has_access = (i_new_flags & (Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write)) != 0;
    return has_access && FindOpenedBy(i_file) != nullptr ? S_OK : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE FilesCache::CloseCache(Qorv::IAFS_File* i_file, Qorv::IAFS_FileCache* i_cache,
                                                 Qorv::IQorv_ErrorDetails* o_details,
                                                 Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    const Qorv::ComPtr<Qorv::IAFS_File> keep_file(i_file); // As any host may, also for a file that is just going.
    return Answer(o_details, [&] {
        const Entry entry = FindOpenedBy(i_file);
        if (entry == nullptr || entry != i_cache)
            throw Failure(E_INVALIDARG, L"The file is not open in the cache");
        if (entry->OpenFiles().size() > 1) {
            entry->OpenFiles().erase(i_file);
            return;
        }
        const auto said = Qorv::Create<ErrorDetails>();
        const HRESULT result = entry->Flush(said, i_cancel_flag);
        if (SUCCEEDED(result)) {
            Remove(entry);
            return;
        }
        // Older kept bytes must not compete with these, which become kept ones only when the file releases them.
        Answer([&] { ReplaceKept(entry->Location()); });
        entry->OpenFiles().erase(i_file);
        if (o_details == nullptr) // The file was never closed, so report it here.
            m_notice(entry->Location() + L": " + said->Text());
        throw Failure(result, said->Text());
    });
}

void FilesCache::Discard(Qorv::IAFS_File* i_file) {
    if (const Entry entry = FindOpenedBy(i_file); entry != nullptr)
        entry->ForgetChanges();
}

void FilesCache::SetOriginal(Qorv::IAFS_File* i_file, std::function<bool()> i_still_stands) {
    if (const Entry entry = FindOpenedBy(i_file); entry != nullptr)
        entry->SetOriginal(std::move(i_still_stands));
}

std::vector<KeptFile> FilesCache::Kept() const {
    std::vector<KeptFile> kept = EntryFiles::ListKept(m_folder);
    std::erase_if(kept, [&](const KeptFile& i_kept) {
        const auto entry = std::ranges::find(m_entries, i_kept.path, [](const Entry& i_e) { return i_e->Path(); });
        return entry != m_entries.end() && !(*entry)->OpenFiles().empty();
    });
    return kept;
}

void FilesCache::DropKept(const KeptFile& i_kept) {
    const auto entry = std::ranges::find(m_entries, i_kept.path, [](const Entry& i_e) { return i_e->Path(); });
    if (entry != m_entries.end())
        Remove(*entry);
    else
        EntryFiles::Adopt(i_kept.path).Remove();
}

void FilesCache::OnTransferred(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total) const {
    if (m_progress)
        m_progress(i_is_upload, i_done, i_total);
}

void FilesCache::OnUploaded(const CacheEntry& i_entry) {
    ReplaceKept(i_entry.Location());
}

void FilesCache::Close() {
    for (const Entry& entry : std::exchange(m_entries, {})) {
        if (entry->IsKeptByClose() && !entry->OpenFiles().empty()) // The others were reported at their close.
            Answer([&] {
                m_notice(entry->Location() + L": not saved; the changed file is kept as " + entry->Path().wstring());
            });
        entry->Close();
    }
}

FilesCache::Entry FilesCache::FindOpen(const std::wstring& i_location) const {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry& i_entry) {
        return !i_entry->OpenFiles().empty() && EqualIgnoringCase(i_entry->Location(), i_location);
    });
    return found != m_entries.end() ? *found : nullptr;
}

FilesCache::Entry FilesCache::FindOpenedBy(Qorv::IAFS_File* i_file) const {
    const auto found =
        std::ranges::find_if(m_entries, [&](const Entry& i_entry) { return i_entry->OpenFiles().contains(i_file); });
    return found != m_entries.end() ? *found : nullptr;
}

FilesCache::Entry FilesCache::TakeKept(const std::wstring& i_location) {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry& i_entry) {
        return i_entry->OpenFiles().empty() && i_entry->IsChanged() &&
               EqualIgnoringCase(i_entry->Location(), i_location);
    });
    if (found != m_entries.end()) {
        Entry kept = std::move(*found);
        m_entries.erase(found);
        return kept;
    }
    auto abandoned = EntryFiles::FindAbandoned(m_folder, i_location);
    if (!abandoned)
        return nullptr;
    const Entry kept = Qorv::Create<CacheEntry>(*this, std::move(*abandoned));
    kept->StartWithKeptBytes();
    return kept;
}

/// The kept bytes that an open with write access continues with, if there are any.
FilesCache::Entry FilesCache::TakeKeptForWriting(const std::wstring& i_location, ULONG i_flags) {
    if ((i_flags & Qorv::AFS_OpenFile_Write) == 0)
        return nullptr;
    if ((i_flags & Qorv::AFS_OpenFile_CreateAlways) != 0) {
        ReplaceKept(i_location);
        return nullptr;
    }
    const Entry kept = TakeKept(i_location);
    if (kept != nullptr)
        m_notice(i_location + L" continues with the changes that could not be saved before");
    return kept;
}

void FilesCache::ReplaceKept(const std::wstring& i_location) {
    while (const Entry kept = TakeKept(i_location)) {
        const std::filesystem::path copy = kept->MoveToReplaced();
        m_notice(L"Earlier changes that could not be saved are replaced; a copy is kept as " + copy.wstring());
    }
}

void FilesCache::Remove(Entry i_entry) {
    const Entry entry = std::move(i_entry); // The caller's entry may be among those removed.
    std::erase(m_entries, entry);
    entry->Remove();
}

} // namespace DevHost
