// The files cache over a scripted service: what is fetched and sent when, and that no changed byte is ever lost.

#include "FilesCacheTest.h"

namespace Tests {
namespace {

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
        m_remote.files[location] = std::string(size, 'y'); // Changed since its size was read.
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
    EXPECT_NE(ss.entry.Get(), sz.entry.Get()) << "linguistic equality isn't equality of files";
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
