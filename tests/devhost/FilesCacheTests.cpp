// The files cache over a scripted service: what is fetched and sent when, and that no changed byte is ever lost.

#include "ScriptedRemote.h"
#include "qorv/Values.h"
#include "services/ErrorDetails.h"
#include "services/FilesCache.h"
#include "support/Content.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace Tests {
namespace {

using DevHost::FilesCache;
using Qorv::ComPtr;

constexpr ULONG piece = 64 * 1024;
constexpr ULONG read_only = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_OpenExisting;
constexpr ULONG read_write = Qorv::AFS_OpenFile_Read | Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_OpenAlways;
constexpr ULONG replace = Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_CreateAlways;
const std::wstring location = L"dropbox://id/Docs/Report.pdf";

/// A file that is open on an entry, as the plug-in opens one.
struct OpenFile {
    ComPtr<ScriptedFile> file;
    ComPtr<Qorv::IAFS_FileCache> entry;
    HRESULT queried = E_UNEXPECTED;
};

class FilesCacheTest : public testing::Test {
protected:
    FilesCacheTest() { Restart(); }
    ~FilesCacheTest() override { m_cache->Close(); }

    /// Ends the host's cache, and begins a new one in the same folder.
    void Restart() {
        if (m_cache != nullptr)
            m_cache->Close();
        m_cache = Qorv::Create<FilesCache>(m_folder.Path() / "cache",
                                           [this](const std::wstring& i_notice) { m_notices.push_back(i_notice); });
    }

    OpenFile Open(ULONG i_flags, const std::wstring& i_location = location) {
        const auto name = Qorv::Create<ScriptedName>(m_file_system, i_location);
        OpenFile opened;
        opened.file = Qorv::Create<ScriptedFile>(name);
        opened.queried = m_cache->QueryCache(opened.file, i_flags, &opened.entry);
        if (opened.queried == S_FALSE) {
            const bool is_new =
                (i_flags & Qorv::AFS_OpenFile_CreateAlways) != 0 || !m_remote.files.contains(i_location);
            const auto callback = Qorv::Create<ScriptedCallback>(m_remote, name);
            EXPECT_EQ(m_cache->CreateNewCache(opened.file, callback, i_flags,
                                              is_new ? 0 : m_remote.files.at(i_location).size(), VARIANT_FALSE, 0, 0,
                                              &opened.entry),
                      S_OK);
        }
        return opened;
    }

    HRESULT Close(OpenFile& io_file) {
        m_details = Qorv::Create<DevHost::ErrorDetails>();
        const HRESULT result = m_cache->CloseCache(io_file.file, io_file.entry, m_details, nullptr);
        io_file.entry.Reset();
        return result;
    }

    /// What is at a position, up to `i_size` bytes.
    static std::string Read(const OpenFile& i_file, ULONGLONG i_position, ULONG i_size) {
        std::string bytes(i_size, '\0');
        ULONG read = 0;
        EXPECT_EQ(i_file.entry->Read(i_position, bytes.data(), i_size, &read, nullptr, nullptr), S_OK);
        bytes.resize(read);
        return bytes;
    }

    static void Write(const OpenFile& i_file, ULONGLONG i_position, const std::string& i_bytes) {
        ULONG written = 0;
        EXPECT_EQ(i_file.entry->Write(i_position, i_bytes.data(), static_cast<ULONG>(i_bytes.size()), &written, nullptr,
                                      nullptr),
                  S_OK);
        EXPECT_EQ(written, i_bytes.size());
    }

    std::string TakeCalls() { return std::exchange(m_remote.calls, {}); }

    /// The files in the cache's folder, not those in folders below.
    std::vector<std::filesystem::path> CacheFiles() const {
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path() / "cache"))
            if (entry.is_regular_file())
                files.push_back(entry.path());
        return files;
    }

    /// What the files hold that were replaced, in alphabetical order.
    std::vector<std::string> Replaced() const {
        std::vector<std::string> contents;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path() / "cache" / "replaced"))
            contents.push_back(ReadBytes(entry.path()));
        std::ranges::sort(contents);
        return contents;
    }

    /// A document was changed, and its upload failed when it was closed.
    void LeaveUnsentChange(const std::string& i_bytes, const std::wstring& i_location = location) {
        m_remote.fail_end = true;
        OpenFile file = Open(replace, i_location);
        Write(file, 0, i_bytes);
        EXPECT_EQ(Close(file), connection_broke);
        m_remote.fail_end = false;
        TakeCalls();
    }

    TemporaryFolder m_folder;
    ScriptedRemote m_remote;
    ComPtr<ScriptedFileSystem> m_file_system = Qorv::Create<ScriptedFileSystem>(m_remote);
    std::vector<std::wstring> m_notices;
    ComPtr<FilesCache> m_cache;
    ComPtr<DevHost::ErrorDetails> m_details;
};

TEST_F(FilesCacheTest, FetchesForwardAndNoMoreThanIsRead) {
    const std::string bytes = RandomBytes(3 * piece + 100);
    m_remote.files[location] = bytes;
    OpenFile file = Open(read_only);
    EXPECT_EQ(TakeCalls(), "") << "opening needs no bytes";
    EXPECT_EQ(Read(file, piece + 5, 10), bytes.substr(piece + 5, 10));
    EXPECT_EQ(TakeCalls(), "read 0;read 65536;");
    EXPECT_EQ(Read(file, 3, piece), bytes.substr(3, piece));
    EXPECT_EQ(TakeCalls(), "") << "what is here is not fetched again";
    EXPECT_EQ(Read(file, 3 * piece, 1000), bytes.substr(3 * piece));
    EXPECT_EQ(TakeCalls(), "read 131072;read 196608;read 196708;") << "up to the end that the service has";
    EXPECT_EQ(Read(file, 5 * piece, 10), "");
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(TakeCalls(), "") << "an unchanged file is not uploaded";
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, TakesTheSizeThatTheDownloadHas) {
    for (const std::size_t size : {0, 1, 10, 200}) {
        m_remote.files[location] = std::string(10, 'x');
        OpenFile file = Open(read_only);
        m_remote.files[location] = std::string(size, 'y'); // Changed since its size was asked.
        EXPECT_EQ(Read(file, 0, 1000), std::string(size, 'y'));
        ULONGLONG known = 0;
        EXPECT_EQ(file.entry->get_Size(&known), S_OK);
        EXPECT_EQ(known, size);
        EXPECT_EQ(Close(file), S_OK);
    }
}

TEST_F(FilesCacheTest, BeginsABrokenDownloadAnew) {
    const std::string bytes = RandomBytes(2 * piece);
    m_remote.files[location] = bytes;
    m_remote.fail_read_at = piece;
    OpenFile file = Open(read_only);
    std::string read_bytes(bytes.size(), '\0');
    ULONG read = 0;
    const auto details = Qorv::Create<DevHost::ErrorDetails>();
    EXPECT_EQ(file.entry->Read(0, read_bytes.data(), 2 * piece, &read, details, nullptr), connection_broke);
    EXPECT_EQ(read, 0u);
    EXPECT_EQ(details->Text(), L"The download broke");
    EXPECT_EQ(Read(file, 0, 2 * piece), bytes);
    EXPECT_EQ(TakeCalls(), "read 0;read 65536;read 0;read 65536;read 131072;");
    Close(file);
}

TEST_F(FilesCacheTest, LeavesNoTailOfALongerDownloadThatBroke) {
    m_remote.files[location] = std::string(2 * piece, 'x');
    m_remote.fail_read_at = piece;
    OpenFile file = Open(read_write);
    char byte = 0;
    ULONG read = 0;
    EXPECT_EQ(file.entry->Read(2 * piece - 1, &byte, 1, &read, nullptr, nullptr), connection_broke);
    m_remote.files[location] = "short";
    EXPECT_EQ(Read(file, 0, 100), "short");
    EXPECT_EQ(file.entry->SetSize(7, nullptr, nullptr), S_OK);
    Write(file, 8, "!");
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(m_remote.files[location], std::string("short\0\0\0!", 9));
}

TEST_F(FilesCacheTest, SharesOneEntryForAllOpensOfALocation) {
    m_remote.files[location] = "content";
    OpenFile first = Open(read_write);
    EXPECT_EQ(Read(first, 0, 100), "content");
    TakeCalls();
    OpenFile second = Open(read_only, L"dropbox://id/docs/REPORT.pdf");
    EXPECT_EQ(second.entry.Get(), first.entry.Get());
    EXPECT_EQ(TakeCalls(), "") << "no second download";
    Write(first, 0, "CON");
    EXPECT_EQ(Read(second, 0, 100), "CONtent");
    EXPECT_EQ(Close(first), S_OK);
    EXPECT_EQ(TakeCalls(), "") << "the entry has still a file";
    EXPECT_EQ(Close(second), S_OK);
    EXPECT_EQ(m_remote.files[location], "CONtent");

    m_remote.files[L"dropbox://id/strasse"] = "ss";
    m_remote.files[L"dropbox://id/stra\u00DFe"] = "sz";
    OpenFile ss = Open(read_only, L"dropbox://id/strasse");
    OpenFile sz = Open(read_only, L"dropbox://id/stra\u00DFe");
    EXPECT_NE(ss.entry.Get(), sz.entry.Get()) << "linguistic equality is no equality of files";
    Close(ss);
    Close(sz);
}

TEST_F(FilesCacheTest, WritesAnywhereAndUploadsOnceInOrder) {
    m_remote.files[location] = std::string(piece + 10, 'a');
    OpenFile file = Open(read_write);
    Write(file, 5, "bb");
    EXPECT_EQ(TakeCalls(), "read 0;read 65536;read 65546;") << "a changed entry needs all bytes";
    Write(file, piece + 12, "c"); // Leaves two bytes that nobody wrote.
    EXPECT_EQ(file.entry->Flush(nullptr, nullptr), S_OK);
    EXPECT_EQ(TakeCalls(), "size 65549;begin;write 0+65536;write 65536+13;end;");
    std::string expected(piece + 10, 'a');
    expected.replace(5, 2, "bb");
    expected += std::string(2, '\0') + "c";
    EXPECT_EQ(m_remote.files[location], expected);
    EXPECT_EQ(file.entry->Flush(nullptr, nullptr), S_OK);
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(TakeCalls(), "") << "nothing was changed since";
}

TEST_F(FilesCacheTest, CutsAndGrows) {
    m_remote.files[location] = std::string(2 * piece, 'a');
    OpenFile file = Open(read_write);
    EXPECT_EQ(file.entry->SetSize(0, nullptr, nullptr), S_OK);
    EXPECT_EQ(TakeCalls(), "") << "what is cut off is not fetched";
    EXPECT_EQ(file.entry->SetSize(3, nullptr, nullptr), S_OK);
    Write(file, 1, "b");
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(m_remote.files[location], std::string("\0b\0", 3));
}

TEST_F(FilesCacheTest, EmptiesAnEntryThatOthersHaveOpen) {
    m_remote.files[location] = "";
    OpenFile reader = Open(read_only);
    m_remote.files[location] = "has grown since";
    OpenFile writer = Open(replace);
    EXPECT_EQ(writer.entry->SetSize(0, nullptr, nullptr), S_OK);
    Write(writer, 0, "new");
    EXPECT_EQ(Close(writer), S_OK);

    const auto late = Qorv::Create<ScriptedFile>(Qorv::Create<ScriptedName>(m_file_system, location));
    ComPtr<Qorv::IAFS_FileCache> shared; // Its opener did not learn that there is an entry.
    EXPECT_EQ(m_cache->CreateNewCache(late, Qorv::Create<ScriptedCallback>(m_remote, nullptr), replace, 0,
                                      VARIANT_FALSE, 0, 0, &shared),
              S_OK);
    EXPECT_EQ(Read(reader, 0, 100), "");
    Write({.file = late, .entry = shared}, 0, "er");
    EXPECT_EQ(m_cache->CloseCache(late, shared, nullptr, nullptr), S_OK);
    EXPECT_EQ(Close(reader), S_OK);
    EXPECT_EQ(m_remote.files[location], "er");
    EXPECT_EQ(TakeCalls(), "size 2;begin;write 0+2;end;") << "nothing of what is cut off is fetched";
}

TEST_F(FilesCacheTest, RefusesANewDocumentThatCannotBeLookedUp) {
    m_remote.fail_lookup = true;
    const auto name = Qorv::Create<ScriptedName>(m_file_system, location);
    const auto file = Qorv::Create<ScriptedFile>(name);
    ComPtr<Qorv::IAFS_FileCache> entry;
    EXPECT_EQ(m_cache->CreateNewCache(file, Qorv::Create<ScriptedCallback>(m_remote, name), read_write, 0,
                                      VARIANT_FALSE, 0, 0, &entry),
              connection_broke);
    EXPECT_EQ(entry, nullptr);
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, UploadsEmptyDocumentsThatAreNew) {
    struct Row {
        const char* name;
        bool exists;
        ULONG flags;
        const char* calls;
    };
    for (const Row& row :
         {Row{"made anew", false, read_write, "size 0;begin;end;"}, Row{"replaced", true, replace, "size 0;begin;end;"},
          Row{"there and empty", true, read_write, ""}, Row{"only read", true, read_only, ""}}) {
        SCOPED_TRACE(row.name);
        m_remote.files.clear();
        if (row.exists)
            m_remote.files[location] = "";
        OpenFile file = Open(row.flags);
        EXPECT_EQ(Close(file), S_OK);
        EXPECT_EQ(TakeCalls(), row.calls);
    }
}

TEST_F(FilesCacheTest, KeepsWhatCannotBeSentAndSendsItWithTheNextFlush) {
    const std::string bytes = RandomBytes(piece + 1);
    m_remote.files[location] = "old";
    m_remote.fail_write_at = piece;
    OpenFile file = Open(replace);
    Write(file, 0, bytes);
    EXPECT_EQ(file.entry->Flush(nullptr, nullptr), connection_broke);
    Qorv::Bstr path;
    EXPECT_EQ(file.entry->get_TempFileName(&path), S_OK);
    EXPECT_EQ(Close(file), connection_broke);
    EXPECT_EQ(m_details->Text(), L"The upload broke. The changed file is kept as " + std::wstring(path.View()));
    EXPECT_EQ(ReadBytes(path.View()), bytes) << "the bytes are where the message says";
    EXPECT_EQ(m_remote.files[location], "old");

    OpenFile reader = Open(read_only);
    EXPECT_EQ(Read(reader, 0, 100), "old") << "who only reads sees what the service has";
    EXPECT_EQ(Close(reader), S_OK);

    m_remote.fail_write_at.reset();
    EXPECT_EQ(m_cache->FlushAllCaches(nullptr, nullptr, VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_remote.files[location], bytes);
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, FlushesEveryEntryThoughOneFails) {
    OpenFile bad = Open(replace, L"dropbox://id/bad");
    OpenFile good = Open(replace, L"dropbox://id/good");
    Write(bad, 0, std::string(2 * piece, 'b'));
    Write(good, 0, "g");
    m_remote.fail_write_at = piece;
    const auto details = Qorv::Create<DevHost::ErrorDetails>();
    EXPECT_EQ(m_cache->FlushAllCaches(details, nullptr, VARIANT_FALSE), connection_broke);
    EXPECT_TRUE(details->Text().starts_with(L"dropbox://id/bad: The upload broke."));
    EXPECT_EQ(m_remote.files[L"dropbox://id/good"], "g");
    m_remote.fail_write_at.reset();
    EXPECT_EQ(Close(bad), S_OK);
    EXPECT_EQ(Close(good), S_OK);
    EXPECT_EQ(m_remote.files[L"dropbox://id/bad"].size(), 2 * piece);
}

TEST_F(FilesCacheTest, GoesOnWithKeptBytesAfterARestart) {
    m_remote.files[location] = "old";
    LeaveUnsentChange("kept");
    Restart();
    OpenFile reader = Open(read_only);
    EXPECT_EQ(Read(reader, 0, 100), "old");
    Close(reader);
    OpenFile writer = Open(read_write);
    EXPECT_EQ(Read(writer, 0, 100), "kept");
    EXPECT_EQ(m_notices.size(), 1u);
    EXPECT_EQ(Close(writer), S_OK);
    EXPECT_EQ(m_remote.files[location], "kept");
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, KeepsBytesWhoseTitleLooksLikeANote) {
    for (const std::wstring title : {L"shopping.note", L".note", L"shopping.note. "}) {
        LeaveUnsentChange("kept", L"dropbox://id/" + title);
        Restart();
        OpenFile writer = Open(read_write, L"dropbox://id/" + title);
        EXPECT_EQ(Read(writer, 0, 100), "kept");
        EXPECT_EQ(Close(writer), S_OK);
        EXPECT_TRUE(CacheFiles().empty());
    }
}

TEST_F(FilesCacheTest, TellsWhereOpenChangesAreWhenItEnds) {
    m_remote.files[location] = "old";
    OpenFile file = Open(read_write);
    Write(file, 0, "NEW");
    const OpenFile unchanged = Open(read_only, location + L"2");
    Qorv::Bstr path;
    EXPECT_EQ(file.entry->get_TempFileName(&path), S_OK);
    Restart();
    EXPECT_EQ(m_notices,
              std::vector{location + L": not saved; the changed file is kept as " + std::wstring(path.View())});
    EXPECT_EQ(ReadBytes(path.View()), "NEW");
}

TEST_F(FilesCacheTest, NeverReplacesADocumentByOneThatWasNotWritten) {
    m_remote.files[location] = "old";
    OpenFile file = Open(replace);
    EXPECT_EQ(CacheFiles().size(), 1u) << "a crash now leaves no note";
    Restart();
    EXPECT_TRUE(CacheFiles().empty());
    EXPECT_TRUE(m_notices.empty());

    file = Open(replace);
    m_remote.fail_end = true;
    EXPECT_EQ(Close(file), connection_broke);
    EXPECT_EQ(CacheFiles().size(), 2u) << "somebody closed it, so it is meant to be empty";
    m_remote.fail_end = false;
    Restart();
    file = Open(read_write);
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(m_remote.files[location], "");
}

TEST_F(FilesCacheTest, FindsTheChangesOfACrashedRun) {
    m_remote.files[location] = "old";
    OpenFile crashed = Open(read_write);
    Write(crashed, 0, "NEW");
    const auto changed = CacheFiles();
    ASSERT_EQ(changed.size(), 2u) << "the note is there from the first change on";
    const TemporaryFolder other;
    for (const auto& file : changed) // As a crash leaves them; this run still has its own open.
        std::filesystem::copy_file(file, other.Path() / file.filename());
    auto next_run = Qorv::Create<FilesCache>(other.Path(), [](const std::wstring&) {});
    std::swap(m_cache, next_run);
    OpenFile writer = Open(read_write);
    EXPECT_EQ(Read(writer, 0, 100), "NEW");
    EXPECT_EQ(Close(writer), S_OK);
    EXPECT_EQ(m_remote.files[location], "NEW");
    m_cache->Close();
    std::swap(m_cache, next_run);
}

TEST_F(FilesCacheTest, LeavesTheEntriesOfARunningHostAlone) {
    m_remote.files[location] = "old";
    OpenFile mine = Open(read_write);
    OpenFile unchanged = Open(read_only, location + L"2");
    m_remote.files[location + L"2"] = "two";
    Write(mine, 0, "NEW");
    const auto before = CacheFiles();
    auto other_host = Qorv::Create<FilesCache>(m_folder.Path() / "cache", [](const std::wstring&) {}); // Cleans up.
    EXPECT_EQ(CacheFiles().size(), before.size());
    std::swap(m_cache, other_host);
    OpenFile theirs = Open(read_write);
    EXPECT_EQ(Read(theirs, 0, 100), "old") << "changes in progress are no abandoned ones";
    EXPECT_EQ(Close(theirs), S_OK);
    m_cache->Close();
    std::swap(m_cache, other_host);
    EXPECT_EQ(Close(mine), S_OK);
    EXPECT_EQ(Close(unchanged), S_OK);
    EXPECT_EQ(m_remote.files[location], "NEW");
}

TEST_F(FilesCacheTest, KeepsACopyOfWhatIsReplaced) {
    LeaveUnsentChange("first");
    Restart();
    OpenFile file = Open(replace);
    Write(file, 0, "second");
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(m_remote.files[location], "second");
    EXPECT_EQ(Replaced(), std::vector<std::string>{"first"});
    EXPECT_TRUE(CacheFiles().empty());
    EXPECT_EQ(m_notices.size(), 1u);
}

TEST_F(FilesCacheTest, NeverSendsOlderChangesAfterNewerOnes) {
    m_remote.files[location] = "old";
    LeaveUnsentChange("kept");
    OpenFile reader = Open(read_only);
    OpenFile writer = Open(read_write); // Shares the reader's entry, so it cannot go on with the kept bytes.
    Write(writer, 0, "newer");
    EXPECT_EQ(Close(writer), S_OK);
    EXPECT_EQ(Close(reader), S_OK);
    EXPECT_EQ(m_cache->FlushAllCaches(nullptr, nullptr, VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_remote.files[location], "newer");
}

TEST_F(FilesCacheTest, GoesOnWithTheNewestOfSeveralKeptChanges) {
    m_remote.files[location] = "old";
    std::vector<ComPtr<FilesCache>> hosts; // They run side by side, so none takes another's bytes.
    for (const char* bytes : {"a", "b", "c", "d", "newest"}) {
        hosts.push_back(Qorv::Create<FilesCache>(m_folder.Path() / "cache", [](const std::wstring&) {}));
        std::swap(m_cache, hosts.back());
        LeaveUnsentChange(bytes);
        std::swap(m_cache, hosts.back());
        Sleep(30); // The clock of a file system is no fine one.
    }
    for (const auto& host : hosts)
        host->Close();
    OpenFile writer = Open(read_write);
    EXPECT_EQ(Read(writer, 0, 100), "newest");
    EXPECT_EQ(Close(writer), S_OK);
    EXPECT_EQ(m_remote.files[location], "newest");
    EXPECT_EQ(Replaced(), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, ReplacesOlderKeptChangesWhenNewerOnesAreKept) {
    m_remote.files[location] = "old";
    LeaveUnsentChange("kept");
    OpenFile reader = Open(read_only);
    OpenFile writer = Open(read_write);
    Write(writer, 0, "newer");
    EXPECT_EQ(Close(reader), S_OK);
    m_remote.fail_end = true;
    EXPECT_EQ(Close(writer), connection_broke);
    m_remote.fail_end = false;
    EXPECT_EQ(m_cache->FlushAllCaches(nullptr, nullptr, VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_remote.files[location], "newer");
    EXPECT_EQ(Replaced(), std::vector<std::string>{"kept"});
}

TEST_F(FilesCacheTest, FlushesARenamedEntryOverAKeptOne) {
    m_remote.files[L"dropbox://id/draft"] = "draft";
    OpenFile file = Open(read_write, L"dropbox://id/draft");
    Write(file, 0, "D");
    LeaveUnsentChange("kept");
    ComPtr<Qorv::IAFS_Name> name;
    EXPECT_EQ(file.file->get_Name(&name), S_OK);
    Qorv::OwnObject<ScriptedName>(name)->location = location;
    EXPECT_EQ(m_cache->FlushAllCaches(nullptr, nullptr, VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_remote.files[location], "Draft");
    EXPECT_EQ(Replaced(), std::vector<std::string>{"kept"});
    EXPECT_EQ(Close(file), S_OK);
}

TEST_F(FilesCacheTest, FollowsARename) {
    m_remote.files[location] = "old";
    OpenFile file = Open(read_write);
    ComPtr<Qorv::IAFS_Name> name;
    EXPECT_EQ(file.file->get_Name(&name), S_OK);
    const std::wstring new_location = L"dropbox://id/Renamed.pdf";
    Qorv::OwnObject<ScriptedName>(name)->location = new_location;
    m_remote.files = {{new_location, "old"}};
    OpenFile second = Open(read_only, new_location);
    EXPECT_EQ(second.entry.Get(), file.entry.Get());
    Write(file, 0, "NEW");
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(Close(second), S_OK);
    EXPECT_EQ(m_remote.files, (std::map<std::wstring, std::string>{{new_location, "NEW"}}));
}

TEST_F(FilesCacheTest, GivesUpWhatIsDiscarded) {
    m_remote.files[location] = "old";
    OpenFile file = Open(replace);
    Write(file, 0, "half a docu");
    m_cache->Discard(file.file);
    EXPECT_EQ(Close(file), S_OK);
    EXPECT_EQ(TakeCalls(), "");
    EXPECT_EQ(m_remote.files[location], "old");
    EXPECT_TRUE(CacheFiles().empty());
}

TEST_F(FilesCacheTest, AnswersWrongCallsAndOutlivesTheHost) {
    m_remote.files[location] = "old";
    OpenFile file = Open(read_write);
    const auto stranger = Qorv::Create<ScriptedFile>(nullptr);
    EXPECT_EQ(m_cache->CheckForReopenFile(file.file, Qorv::AFS_OpenFile_Read), S_OK);
    EXPECT_EQ(m_cache->CheckForReopenFile(file.file, 0), E_INVALIDARG);
    EXPECT_EQ(m_cache->CheckForReopenFile(stranger, Qorv::AFS_OpenFile_Read), E_INVALIDARG);
    EXPECT_EQ(m_cache->CloseCache(stranger, file.entry, nullptr, nullptr), E_INVALIDARG);
    m_cache->Close();
    ULONG read = 0;
    char byte = 0;
    EXPECT_EQ(file.entry->Read(0, &byte, 1, &read, nullptr, nullptr), E_UNEXPECTED);
    EXPECT_EQ(file.entry->Flush(nullptr, nullptr), E_UNEXPECTED);
    EXPECT_EQ(Close(file), E_INVALIDARG);
}

} // namespace
} // namespace Tests
