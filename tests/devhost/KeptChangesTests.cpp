// What the files cache does with changes that could not be sent: over flushes, closes, restarts and crashes.

#include "FilesCacheTest.h"

namespace Tests {
namespace {

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

TEST_F(FilesCacheTest, KeepsNoCopyOfWhatStillStands) {
    m_remote.fail_end = true;
    for (const bool stands : {true, false}) {
        OpenFile file = Open(replace);
        m_cache->SetOriginal(file.file, [&] { return stands; });
        Write(file, 0, "copy");
        EXPECT_EQ(Close(file), connection_broke);
        m_cache->FlushAllCaches(nullptr, nullptr, VARIANT_FALSE);
        EXPECT_EQ(m_details->Text().find(L"is kept as") == std::wstring::npos, stands) << m_details->Text();
        EXPECT_EQ(m_cache->Kept().empty(), stands);
    }
    m_cache->Close();
    EXPECT_EQ(CacheFiles().size(), 2u) << "the bytes and the note of the second one";
}

TEST_F(FilesCacheTest, ListsAndDropsWhatIsKept) {
    LeaveUnsentChange("first", L"dropbox://id/a.pdf");
    Restart();
    LeaveUnsentChange("second!", L"dropbox://id/b.pdf");
    OpenFile open = Open(replace, L"dropbox://id/open.pdf");
    Write(open, 0, "open");
    auto kept = m_cache->Kept();
    ASSERT_EQ(kept.size(), 2u) << "what is in an open file is not among them";
    EXPECT_EQ(kept[0].location, L"dropbox://id/a.pdf");
    EXPECT_EQ(kept[1].location, L"dropbox://id/b.pdf");
    EXPECT_EQ(kept[1].size, 7u);
    EXPECT_EQ(kept[1].Id().size(), 8u);
    EXPECT_EQ(ReadBytes(kept[0].path), "first");
    for (const auto& file : kept)
        m_cache->DropKept(file);
    EXPECT_TRUE(m_cache->Kept().empty());
    EXPECT_EQ(Close(open), S_OK);
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
    EXPECT_EQ(Read(theirs, 0, 100), "old") << "changes in progress aren't abandoned ones";
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
        Sleep(30); // The clock of a file system is coarse.
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

} // namespace
} // namespace Tests
