#include "AfsTest.h"

namespace {

using Qorv::ComPtr;
using Qorv::IAFS_File;

constexpr ULONG read = Qorv::AFS_OpenFile_Read;
constexpr ULONG write = Qorv::AFS_OpenFile_Write;
constexpr ULONG create_new = Qorv::AFS_OpenFile_CreateNew;
constexpr ULONG create_always = Qorv::AFS_OpenFile_CreateAlways;
constexpr ULONG open_existing = Qorv::AFS_OpenFile_OpenExisting;
constexpr ULONG open_always = Qorv::AFS_OpenFile_OpenAlways;
constexpr HRESULT not_found = static_cast<HRESULT>(0x80070002);
constexpr HRESULT exists = static_cast<HRESULT>(0x80070050);

class FileTest : public Tests::AfsTest {
protected:
    void Put(const std::wstring& i_path, const std::string& i_bytes) {
        Tests::WriteBytes(Tests::Service::LocalPath(i_path), i_bytes);
    }
    std::string Remote(const std::wstring& i_path) { return Tests::ReadBytes(Tests::Service::LocalPath(i_path)); }
    ULONGLONG SizeOf(IAFS_File* i_file) {
        ULONGLONG size = 77;
        EXPECT_HRESULT(S_OK, i_file->GetSize(&size));
        return size;
    }
    void Close(IAFS_File* i_file) { EXPECT_HRESULT(S_OK, i_file->Close(m_details, nullptr)); }
};

TEST_F(FileTest, FlagsAndDispositions) {
    const struct {
        ULONG flags;
        const wchar_t* path;
        bool is_bound;
        HRESULT result;
        const wchar_t* text; ///< How the details begin.
    } cases[] = {
        {0, L"/a", false, E_INVALIDARG, L""},
        {open_existing, L"/a", false, E_INVALIDARG, L""},
        {read, L"/a", false, S_OK, L""},
        {read | write, L"/a", false, S_OK, L""},
        {read | open_existing, L"/a", false, S_OK, L""},
        {read | open_existing, L"/missing", false, not_found, L""},
        {read | open_existing, L"/Docs", false, not_found, L""},
        {write | open_existing, L"/missing", false, not_found, L""},
        {write | create_new, L"/new1", false, S_OK, L""},
        {write | create_new, L"/a", true, exists, L""},
        {write | create_new, L"/a", false, S_OK, L""}, // Only the name's own record counts.
        {write | create_always, L"/a", true, S_OK, L""},
        {read | create_always, L"/a", false, E_FAIL, L"Mode CreateAlways can be used only for writting"},
        {write | create_new | create_always, L"/a", false, E_FAIL,
         L"Multiple create disposition modes are not supported"},
        {write | 0x3C, L"/a", false, E_FAIL, L"Multiple create disposition modes are not supported"},
        {read | open_always, L"/a", false, S_OK, L""},
        {write | open_always, L"/new2", false, S_OK, L""},
        {write, L"/new3", false, S_OK, L""},
        {read, L"/missing", false, E_FAIL, L"File does not exist"},
        {read | open_always, L"/missing", false, E_FAIL, L"File does not exist"},
        {write | open_always, L"/Docs", false, E_FAIL, L"File does not exist"}, // A folder is in the way.
        {write | create_always, L"/Docs", false, E_FAIL, L"A folder has this name"},
        {write | create_always, L"/Docs", true, E_FAIL, L"A folder has this name"},
    };
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    for (const auto& [flags, path, is_bound, result, text] : cases) {
        Put(L"/a", "bytes");
        const auto name = NameOf(path);
        if (is_bound)
            Qorv::OwnObject<Name>(name)->BindObject();
        ComPtr<IAFS_File> file;
        const std::string what = ToUtf8(path) + " flags " + std::to_string(flags);
        EXPECT_HRESULT(result, Open(name, flags, file)) << what;
        EXPECT_EQ(SUCCEEDED(result), file != nullptr) << what;
        EXPECT_TRUE(m_details->Text().starts_with(text)) << what << ": " << ToUtf8(m_details->Text());
        EXPECT_EQ(FAILED(result), !m_details->Text().empty()) << what << ": a code has words as well";
        EXPECT_HRESULT(result, m_details->Code()) << what;
        if (file != nullptr) {
            ULONG io_mode = 0;
            EXPECT_HRESULT(S_OK, file->get_IoMode(&io_mode));
            EXPECT_EQ(flags & 3, io_mode) << what;
        }
    }
    EXPECT_EQ("", Remote(L"/new1"));
    for (const wchar_t* path : {L"/new1", L"/new2", L"/new3"})
        EXPECT_TRUE(std::filesystem::exists(Tests::Service::LocalPath(path))) << "an empty new document is kept";
}

TEST_F(FileTest, ReadsAndWritesGoOnWhereTheyEnded) {
    const std::string bytes = Tests::RandomBytes(300'000);
    Put(L"/\xe4 b.pdf", bytes);
    const auto file = Opened(L"/\xe4 b.pdf", read | write | open_existing);
    EXPECT_EQ(bytes.size(), SizeOf(file));
    EXPECT_EQ(bytes, Tests::ReadAll(file));
    ULONGLONG position = 0;
    EXPECT_HRESULT(S_OK, file->SetPos(-10, Qorv::AFS_Origin_End));
    EXPECT_EQ(bytes.substr(bytes.size() - 10), Tests::ReadAll(file));
    EXPECT_HRESULT(S_OK, file->SetPos(100, Qorv::AFS_Origin_Begin));
    EXPECT_HRESULT(S_OK, file->SetPos(-50, Qorv::AFS_Origin_Current));
    EXPECT_HRESULT(S_OK, file->GetPos(&position));
    EXPECT_EQ(50U, position);
    Tests::WriteAll(file, "new");
    EXPECT_HRESULT(S_OK, file->GetPos(&position));
    EXPECT_EQ(53U, position);
    EXPECT_HRESULT(S_OK, file->SetPos(-53, Qorv::AFS_Origin_Current)) << "exactly to the beginning";
    EXPECT_HRESULT(S_OK, file->GetPos(&position));
    EXPECT_EQ(0U, position);
    EXPECT_HRESULT(S_OK, file->SetPos(53, Qorv::AFS_Origin_Current));

    EXPECT_HRESULT(E_INVALIDARG, file->SetPos(-54, Qorv::AFS_Origin_Current)) << "before the beginning";
    EXPECT_HRESULT(E_FAIL, file->SetPos(0, 3));
    EXPECT_HRESULT(S_OK, file->SetSize(1000, nullptr, nullptr));
    EXPECT_EQ(bytes, Remote(L"/\xe4 b.pdf")) << "nothing is sent before a flush";
    EXPECT_HRESULT(S_OK, file->Flush(m_details, nullptr)) << ToUtf8(m_details->Text());
    EXPECT_EQ(bytes.substr(0, 50) + "new" + bytes.substr(53, 947), Remote(L"/\xe4 b.pdf"));
    Close(file);
    EXPECT_EQ(1U, Calls("files/upload")) << "a clean entry is not sent again";
}

TEST_F(FileTest, AccessFlagsCancelAndClosedFiles) {
    Put(L"/a", "bytes");
    char byte = 0;
    ULONG count = 0;
    const auto reader = Opened(L"/a", read);
    const auto writer = Opened(L"/b", write);
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, reader->Write(&byte, 1, &count, nullptr, nullptr));
    EXPECT_HRESULT(E_INVALIDARG, reader->SetSize(1, nullptr, nullptr));
    EXPECT_TRUE(log.Has("File::SetSize<-- Expression: \"m_flags & Qorv::AFS_OpenFile_Write\" caused returning "));
    EXPECT_HRESULT(E_INVALIDARG, writer->Read(&byte, 1, &count, nullptr, nullptr));
    ComPtr<IAFS_File> clone;
    EXPECT_HRESULT(E_INVALIDARG, writer->Clone(&clone));
    EXPECT_TRUE(log.Has("File::Clone<-- Expression: \"m_flags & Qorv::AFS_OpenFile_Read\" caused returning "));

    EXPECT_HRESULT(Qorv::ErrorCanceled, reader->Read(&byte, 1, nullptr, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, writer->Write(&byte, 1, nullptr, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, writer->SetSize(1, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, writer->Flush(nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, reader->Close(nullptr, m_canceled));
    EXPECT_HRESULT(S_OK, reader->Read(&byte, 1, &count, nullptr, nullptr)) << "a canceled close closes nothing";

    Close(reader);
    Close(reader);
    EXPECT_HRESULT(E_UNEXPECTED, reader->Read(&byte, 1, &count, nullptr, nullptr));
    EXPECT_TRUE(log.Has("File::Read<-- Expression: \"m_cache != nullptr\" caused returning \"HRESULT 0x8000ffff: "));
    EXPECT_HRESULT(E_UNEXPECTED, reader->Flush(nullptr, nullptr));
}

TEST_F(FileTest, OpenFilesShareOneDownload) {
    Put(L"/a", "bytes");
    const auto one = Opened(L"/a", read);
    const auto other = Opened(L"/A", read | write);
    ComPtr<IAFS_File> clone;
    EXPECT_HRESULT(S_OK, one->SetPos(2, Qorv::AFS_Origin_Begin));
    EXPECT_HRESULT(S_OK, one->Clone(&clone));
    EXPECT_EQ("tes", Tests::ReadAll(clone));
    EXPECT_EQ("tes", Tests::ReadAll(one));
    Tests::WriteAll(other, "BY");
    EXPECT_HRESULT(S_OK, one->SetPos(0, Qorv::AFS_Origin_Begin));
    EXPECT_EQ("BYtes", Tests::ReadAll(one));
    EXPECT_EQ(1U, Calls("files/download"));

    VARIANT_BOOL is_clone = VARIANT_FALSE;
    EXPECT_HRESULT(S_OK, clone->IsCloneOf(other, &is_clone));
    EXPECT_EQ(VARIANT_TRUE, is_clone);
    EXPECT_HRESULT(S_OK, clone->IsCloneOf(Opened(L"/b", write), &is_clone));
    EXPECT_EQ(VARIANT_FALSE, is_clone);
    Close(other);
    Close(one);
    EXPECT_EQ("bytes", Remote(L"/a")) << "the clone has the entry open still";
    Close(clone);
    EXPECT_EQ("BYtes", Remote(L"/a"));
}

TEST_F(FileTest, ReopenAndProperties) {
    Put(L"/a", "bytes");
    const auto file = Opened(L"/a", read | open_existing);
    EXPECT_HRESULT(S_OK, file->SetPos(2, Qorv::AFS_Origin_Begin));
    EXPECT_HRESULT(S_OK, file->Reopen(read | write, nullptr, nullptr));
    ULONG flags = 0;
    EXPECT_HRESULT(S_OK, file->get_OpenFlags(&flags));
    EXPECT_EQ(read | write, flags);
    Tests::WriteAll(file, "T");

    const auto unbound = Opened(L"/new", read | write);
    const Tests::LogCapture log;
    EXPECT_HRESULT(E_INVALIDARG, unbound->Reopen(read, nullptr, nullptr));
    EXPECT_TRUE(log.Has("Expression: \"m_name->GetObject()->AsFile() != nullptr\" caused returning "));

    Qorv::Variant path;
    EXPECT_HRESULT(S_OK, file->get_Prop(L"TempFileName", &path));
    EXPECT_EQ("byTes", Tests::ReadBytes(std::filesystem::path(path.Text())));
    EXPECT_HRESULT(E_INVALIDARG, file->get_Prop(L"Size", &path));
    EXPECT_HRESULT(E_INVALIDARG, file->put_Prop(L"TempFileName", path));
    EXPECT_HRESULT(E_INVALIDARG, file->Exec(L"x", nullptr));
    EXPECT_HRESULT(E_NOTIMPL, file->GetStream(nullptr));
}

TEST_F(FileTest, CreateAlwaysReplacesWithoutADownload) {
    Put(L"/a", "the old and longer bytes");
    const auto reader = Opened(L"/a", read);
    const auto file = Opened(L"/A", write | create_always);
    EXPECT_EQ(0U, SizeOf(reader)) << "an open entry is emptied, in whatever letters the name is written";
    Tests::WriteAll(file, "new");
    EXPECT_HRESULT(S_OK, file->Flush(nullptr, nullptr));
    EXPECT_EQ("new", Remote(L"/a"));
    EXPECT_EQ(0U, Calls("files/download"));
}

// The host keeps names for a long time: their records may be older than the file.
TEST_F(FileTest, ABoundNameIsAskedForAnewBeforeItsSizeIsTaken) {
    Put(L"/a", "short");
    const auto name = NameOf(L"/a");
    Qorv::OwnObject<Name>(name)->BindObject();
    Put(L"/a", "much longer by now");
    ComPtr<IAFS_File> file;
    EXPECT_HRESULT(S_OK, Open(name, read | open_existing, file));
    EXPECT_EQ(18U, SizeOf(file)) << "before anything is read";
    EXPECT_EQ("much longer by now", Tests::ReadAll(file));
    Close(file);

    Tests::Service::ClearRequests();
    Close(Opened(L"/a", read));
    EXPECT_EQ(1U, Calls("files/get_metadata")) << "a name just bound is not asked for twice";
}

TEST_F(FileTest, AFileThatWentIsWrittenAgain) {
    const auto name = NameOf(L"/a");
    const auto lose = [&] {
        Put(L"/a", "bytes");
        Qorv::OwnObject<Name>(name)->BindObject();
        std::filesystem::remove(Tests::Service::LocalPath(L"/a"));
    };
    lose();
    ComPtr<IAFS_File> file;
    EXPECT_HRESULT(not_found, Open(name, read | write | open_existing, file));
    EXPECT_HRESULT(E_FAIL, Open(name, read, file));
    EXPECT_HRESULT(S_OK, Open(name, read | write | open_always, file));
    EXPECT_EQ(0U, SizeOf(file));
    Tests::WriteAll(file, "new");
    EXPECT_HRESULT(S_OK, file->Flush(nullptr, nullptr));
    EXPECT_EQ("new", Remote(L"/a"));

    EXPECT_EQ(3U, Qorv::OwnObject<Name>(name)->GetObject()->GetInformation()._size) << "the host's name lives again";

    EXPECT_HRESULT(S_OK, m_file_system->Rename(name, NameOf(L"/b"), nullptr, nullptr));
    const auto other = Opened(L"/b", read | write);
    VARIANT_BOOL is_clone = VARIANT_FALSE;
    EXPECT_HRESULT(S_OK, other->IsCloneOf(file, &is_clone));
    EXPECT_EQ(VARIANT_TRUE, is_clone) << "the file follows the host's name at once";
    Close(other);
    Tests::WriteAll(file, "er");
    Close(file);
    EXPECT_EQ("newer", Remote(L"/b")) << "the file follows the host's name";
    EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/a")));
}

TEST_F(FileTest, AFileOfSomebodyElseIsNotReplacedUnasked) {
    const auto file = Opened(L"/a", write);
    Tests::WriteAll(file, "mine");
    Put(L"/a", "theirs");
    EXPECT_HRESULT(E_FAIL, file->Flush(m_details, nullptr));
    EXPECT_TRUE(m_details->Text().starts_with(L"Somebody else has meanwhile saved a file of this name"));
    EXPECT_NE(std::wstring::npos, m_details->Text().find(L"is kept as "));
    EXPECT_EQ("theirs", Remote(L"/a"));
    EXPECT_EQ(0U, Calls("files/upload"));
    EXPECT_HRESULT(S_OK, file->Flush(m_details, nullptr)) << "now the user has decided";
    EXPECT_EQ("mine", Remote(L"/a"));

    const auto closed = Opened(L"/d", write);
    Tests::WriteAll(closed, "mine");
    Put(L"/d", "theirs");
    EXPECT_HRESULT(E_FAIL, closed->Flush(m_details, nullptr));
    EXPECT_HRESULT(E_FAIL, closed->Close(m_details, nullptr)) << "the user has chosen another name";
    EXPECT_EQ("theirs", Remote(L"/d"));

    const auto replacing = Opened(L"/b", write | create_always);
    Put(L"/b", "theirs");
    Tests::WriteAll(replacing, "mine");
    Close(replacing);
    EXPECT_EQ("mine", Remote(L"/b")) << "opened to replace whatever is there";

    const auto retried = Opened(L"/c", write);
    Put(L"/c", "");
    Tests::WriteAll(retried, "mine");
    Close(retried);
    EXPECT_EQ("mine", Remote(L"/c")) << "an upload that failed leaves an empty file";
}

// The answer of a gateway in the service's place must not cause a file to be emptied or created.
TEST_F(FileTest, OnlyTheServiceSaysThatAFileIsMissing) {
    const char* const faults[] = {R"("status": 404, "body": "<html>not here</html>")",
                                  R"("status": 404)",
                                  R"("status": 404, "body": "{\"error_summary\": \"path/not_found/.\"}")",
                                  R"("body": "{\"name\": \"a\"}")",
                                  R"("body": "{\".tag\": \"portal\", \"name\": \"a\"}")",
                                  R"("status": 409, "body": "{\"error_summary\": \"path/locked/.\"}")"};
    for (const char* const fault : faults)
        for (const ULONG flags : {write, write | open_always, write | create_always, read | write}) {
            Put(L"/a", "bytes");
            const auto name = NameOf(L"/a");
            Tests::Service::ClearFaults();
            Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "times": 0, )" + std::string(fault) + "}");
            ComPtr<IAFS_File> file;
            EXPECT_TRUE(FAILED(Open(name, flags, file))) << fault << " flags " << flags;
            EXPECT_EQ("bytes", Remote(L"/a"));
            Tests::Service::ClearFaults();
            const auto known = OwnName(L"/a");
            EXPECT_NE(nullptr, known->BindObject());
            Tests::Service::AddFault(R"({"path": "2/files/get_metadata", "times": 0, )" + std::string(fault) + "}");
            if (flags != (write | create_always)) {
                EXPECT_TRUE(FAILED(Open(known, flags, file))) << fault << " flags " << flags << ", known before";
            }
        }
    Tests::Service::ClearFaults();
    std::filesystem::remove(Tests::Service::LocalPath(L"/a"));
    for (const char* const fault : faults) {
        Put(L"/b", "");
        std::filesystem::remove(Tests::Service::LocalPath(L"/b"));
        const auto file = Opened(L"/b", write);
        Tests::WriteAll(file, "mine");
        Put(L"/b", "theirs");
        Tests::Service::AddFault(R"({"path": "2/files/get_metadata", )" + std::string(fault) + "}");
        EXPECT_TRUE(FAILED(file->Flush(m_details, nullptr))) << fault;
        EXPECT_EQ("theirs", Remote(L"/b")) << fault;
        EXPECT_EQ(0U, Calls("files/upload")) << fault;
        Tests::Service::ClearFaults();
        EXPECT_TRUE(FAILED(file->Flush(m_details, nullptr))) << "a lookup that failed is no warning";
        EXPECT_EQ("theirs", Remote(L"/b")) << fault;
        EXPECT_HRESULT(S_OK, file->Flush(m_details, nullptr)) << fault;
        EXPECT_EQ("mine", Remote(L"/b")) << fault;
        Close(file);
        Tests::Service::ClearRequests();
    }
}

TEST_F(FileTest, ANameThatCannotBeBoundAnewLeadsToTheNewPlace) {
    for (const char* const fault :
         {R"("status": 500)", R"("status": 409, "body": "{\"error_summary\": \"path/not_found/\"}")"}) {
        Put(L"/a", "bytes");
        const auto name = NameOf(L"/a");
        ComPtr<IAFS_File> file;
        EXPECT_HRESULT(S_OK, Open(name, read | write | open_existing, file));
        Tests::WriteAll(file, "BY");
        Tests::Service::AddFault(R"({"path": "2/files/get_metadata", )" + std::string(fault) + "}");
        EXPECT_TRUE(FAILED(m_file_system->Rename(name, NameOf(L"/b"), m_details, nullptr)));
        EXPECT_EQ(Location(L"/b"), TextOf(name)) << fault;
        ComPtr<Qorv::IAFS_FileInfo> info;
        EXPECT_HRESULT(S_OK, m_file_system->GetFileInfo(name, nullptr, nullptr, &info));
        Qorv::Bstr title;
        EXPECT_HRESULT(S_OK, info->get_Title(&title));
        EXPECT_EQ(L"b", title.View());
        Close(file);
        EXPECT_EQ("BYtes", Remote(L"/b")) << fault;
        EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/a"))) << fault;
        std::filesystem::remove(Tests::Service::LocalPath(L"/b"));
    }
}

// Several names refer to one file; all of them follow when one of them renames it, also one of another sign-in.
TEST_F(FileTest, AllNamesOfAnOpenFileFollowItsRename) {
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs"));
    Put(L"/Docs/a", "bytes");
    const auto name = NameOf(L"/Docs/a");
    const auto other_name = NameOf(L"/docs/A");
    ComPtr<IAFS_File> file;
    ComPtr<IAFS_File> other;
    EXPECT_HRESULT(S_OK, Open(name, read | write, file));
    EXPECT_HRESULT(S_OK, Open(other_name, read | write, other));
    Tests::WriteAll(file, "BY");
    std::filesystem::create_directory(Tests::Service::LocalPath(L"/Docs2"));
    Put(L"/Docs2/c", "not below it");
    const auto beside = Opened(L"/Docs2/c", read);

    EXPECT_HRESULT(S_OK, m_file_system->Rename(other_name, NameOf(L"/Docs/b"), nullptr, nullptr));
    m_root = Bind(Tests::Service::Token());
    EXPECT_HRESULT(S_OK, m_file_system->Rename(NameOf(L"/Docs"), NameOf(L"/Papers"), nullptr, nullptr));
    for (IAFS_File* const open : {file.Get(), other.Get()}) {
        ComPtr<IAFS_File> clone;
        ASSERT_HRESULT_SUCCEEDED(open->Clone(&clone));
        Close(clone);
    }
    const auto third = Opened(L"/Papers/b", read | write);
    VARIANT_BOOL is_clone = VARIANT_FALSE;
    EXPECT_HRESULT(S_OK, third->IsCloneOf(file, &is_clone));
    EXPECT_EQ(VARIANT_TRUE, is_clone) << "two entries for one file overwrite each other";
    EXPECT_EQ("BYtes", Tests::ReadAll(third));
    for (IAFS_File* const open : {file.Get(), other.Get(), third.Get()})
        Close(open);
    EXPECT_EQ("BYtes", Remote(L"/Papers/b"));
    ComPtr<Qorv::IAFS_Name> name_beside;
    EXPECT_HRESULT(S_OK, beside->get_Name(&name_beside));
    EXPECT_EQ(Location(L"/Docs2/c"), TextOf(name_beside));
    Close(beside);
    EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/Docs")));
    EXPECT_FALSE(std::filesystem::exists(Tests::Service::LocalPath(L"/Papers/a")));
}

TEST_F(FileTest, AnUploadMakesTheRecordCurrent) {
    Put(L"/a", "bytes");
    const auto name = OwnName(L"/a");
    ComPtr<IAFS_File> file;
    EXPECT_HRESULT(S_OK, Open(name, write | open_existing, file));
    EXPECT_HRESULT(S_OK, file->SetSize(2, nullptr, nullptr));
    Tests::Service::ClearRequests();
    Close(file);
    EXPECT_EQ(2U, name->GetObject()->GetInformation()._size);
    EXPECT_EQ(0U, Calls("files/get_metadata"));
}

TEST_F(FileTest, ADroppedUploadLosesNothing) {
    const std::string old_bytes = Tests::RandomBytes(1000);
    const std::string new_bytes = Tests::RandomBytes(200'000, 2);
    for (const std::size_t dropped_after : {std::size_t{0}, new_bytes.size() / 2, new_bytes.size() - 1}) {
        Put(L"/a", old_bytes);
        const auto file = Opened(L"/a", write | create_always);
        Tests::WriteAll(file, new_bytes);
        Tests::Service::AddFault(R"({"path": "2/files/upload", "drop_request_after": )" +
                                 std::to_string(dropped_after) + "}");
        EXPECT_TRUE(FAILED(file->Close(m_details, nullptr))) << dropped_after;
        EXPECT_EQ(old_bytes, Remote(L"/a")) << dropped_after;
        EXPECT_NE(std::wstring::npos, m_details->Text().find(L"is kept as ")) << ToUtf8(m_details->Text());

        const auto retry = Opened(L"/a", read | write | open_always);
        EXPECT_EQ(new_bytes, Tests::ReadAll(retry)) << dropped_after;
        Close(retry);
        EXPECT_EQ(new_bytes, Remote(L"/a")) << dropped_after;
    }
}

TEST_F(FileTest, FlushSendsEveryChangedFile) {
    const auto one = Opened(L"/1", write);
    const auto other = Opened(L"/2", write);
    Tests::WriteAll(one, "one");
    Tests::WriteAll(other, "other");
    EXPECT_HRESULT(S_OK, m_file_system->BindFlush(m_root, nullptr, nullptr));
    EXPECT_EQ("one", Remote(L"/1"));
    EXPECT_EQ("other", Remote(L"/2"));
}

TEST_F(FileTest, ACanceledCloseUploadsNothingLater) {
    {
        const auto file = Opened(L"/a", write);
        Tests::WriteAll(file, "bytes");
        EXPECT_HRESULT(Qorv::ErrorCanceled, file->Close(m_details, m_canceled));
    }
    EXPECT_EQ(0U, Calls("files/upload"));
    EXPECT_EQ(1U, m_notices.size()) << "the user hears where the changes are";
    EXPECT_HRESULT(S_OK, m_file_system->BindFlush(m_root, m_details, nullptr)) << ToUtf8(m_details->Text());
    EXPECT_EQ("bytes", Remote(L"/a"));

    const auto file = Opened(L"/b", write);
    Tests::WriteAll(file, "bytes");
    EXPECT_HRESULT(Qorv::ErrorCanceled, file->Close(m_details, m_canceled));
    Close(file);
    EXPECT_EQ("bytes", Remote(L"/b")) << "the second close meant it";

    {
        const auto edited = Opened(L"/c", write);
        Tests::WriteAll(edited, "by");
        EXPECT_HRESULT(Qorv::ErrorCanceled, edited->Close(m_details, m_canceled));
        Tests::WriteAll(edited, "tes");
    }
    EXPECT_EQ("bytes", Remote(L"/c")) << "the user went on after the cancelled close";
}

TEST_F(FileTest, AFileThatIsOnlyReleasedIsClosed) {
    {
        const auto file = Opened(L"/a", write);
        Tests::WriteAll(file, "bytes");
    }
    EXPECT_EQ("bytes", Remote(L"/a"));
}

} // namespace
