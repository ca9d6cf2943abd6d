#include "AfsTest.h"

#include "afs/CacheCallback.h"

namespace {

using MissingFile = CacheCallback::MissingFile;

constexpr HRESULT end_of_data = static_cast<HRESULT>(0x80070026);
constexpr HRESULT connection_aborted = static_cast<HRESULT>(0x80072EFE);

class CacheCallbackTest : public Tests::AfsTest {
protected:
    void Prepare(const std::wstring& i_path, MissingFile i_missing_file = MissingFile::Fails) {
        m_path = Tests::Service::LocalPath(i_path);
        m_callback = Qorv::Create<CacheCallback>(OwnName(i_path), i_missing_file);
    }
    ~CacheCallbackTest() override { m_callback.Reset(); }

    HRESULT Read(ULONGLONG i_position, ULONG i_size) {
        std::string piece(i_size, '\0');
        ULONG read = 0;
        m_details = Qorv::Create<DevHost::ErrorDetails>();
        const HRESULT result = m_callback->Read(i_position, piece.data(), i_size, &read, m_details, nullptr);
        m_read = piece.substr(0, read);
        return result;
    }
    HRESULT Write(ULONGLONG i_position, const std::string& i_bytes) {
        ULONG written = 0;
        m_details = Qorv::Create<DevHost::ErrorDetails>();
        return m_callback->Write(i_position, i_bytes.data(), static_cast<ULONG>(i_bytes.size()), &written, m_details,
                                 nullptr);
    }
    void Begin(ULONGLONG i_size) {
        EXPECT_HRESULT(S_OK, m_callback->SetSize(i_size, nullptr, nullptr));
        EXPECT_HRESULT(S_OK, m_callback->BeginWrite(m_details, nullptr)) << ToUtf8(m_details->Text());
    }
    HRESULT End() { return m_callback->EndWrite(m_details, nullptr); }
    std::string Remote() const { return Tests::ReadBytes(m_path); }

    std::filesystem::path m_path;
    Qorv::ComPtr<CacheCallback> m_callback;
    std::string m_read;
};

TEST_F(CacheCallbackTest, ADownloadRunsForward) {
    Prepare(L"/a");
    Tests::WriteBytes(m_path, "bytes");
    EXPECT_HRESULT(S_OK, Read(0, 2));
    EXPECT_EQ("by", m_read);
    EXPECT_HRESULT(S_OK, Read(2, 100));
    EXPECT_EQ("tes", m_read) << "the last partial read is no end yet";
    const Tests::LogCapture log;
    EXPECT_HRESULT(end_of_data, Read(5, 100));
    EXPECT_HRESULT(end_of_data, Read(5, 100));
    EXPECT_TRUE(log.Has("CacheCallback::Read<-- ERROR_HANDLE_EOF\n"));
    EXPECT_EQ(1U, Calls("files/download"));

    EXPECT_HRESULT(E_FAIL, Read(2, 100));
    EXPECT_EQ(L"Requested read position is not equal to current one - random reading is not supported",
              m_details->Text());
    EXPECT_HRESULT(S_OK, Read(0, 100)) << "after a failed read all starts over";
    EXPECT_EQ("bytes", m_read);
    EXPECT_HRESULT(E_INVALIDARG, Read(5, 0));
    ULONG count = 0;
    EXPECT_HRESULT(E_POINTER, m_callback->Read(5, nullptr, 1, &count, nullptr, nullptr));
    EXPECT_HRESULT(end_of_data, Read(5, 1));
}

TEST_F(CacheCallbackTest, ACutDownloadIsAFailureAndStartsOver) {
    Prepare(L"/a");
    const std::string bytes = Tests::RandomBytes(100'000);
    Tests::WriteBytes(m_path, bytes);
    const struct {
        const char* fault;
        HRESULT result;
    } cases[] = {
        {R"("truncate_body": 50000)", connection_aborted},
        {R"("chunked": true, "truncate_body": 50000)", connection_aborted},
        {R"("chunked": true, "truncate_body": 0)", connection_aborted}, // Half a header looks the same.
        {R"("chunked": true)", end_of_data},
    };
    for (const auto& [fault, expected] : cases) {
        Tests::Service::AddFault(R"({"path": "2/files/download", "real": true, )" + std::string(fault) + "}");
        std::string received;
        HRESULT result = S_OK;
        while (SUCCEEDED(result)) {
            result = Read(received.size(), 100'000);
            received += m_read;
        }
        EXPECT_HRESULT(expected, result) << fault;
        EXPECT_EQ(result == end_of_data, received == bytes) << fault;
        if (result != end_of_data) {
            EXPECT_HRESULT(S_OK, Read(0, 100'000)) << fault;
            EXPECT_EQ(bytes.substr(0, m_read.size()), m_read) << fault;
        }
        // The next download starts again from the beginning.
        EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->Read(0, nullptr, 0, nullptr, nullptr, m_canceled));
    }
}

TEST_F(CacheCallbackTest, WhatIsNotTheWholeFileIsNoDownload) {
    Prepare(L"/a");
    const struct {
        const char* fault;
        const char* bytes;
        bool is_whole;
    } cases[] = {
        {R"("status": 200)", "bytes", false},
        {R"("status": 200)", "", true},
        {R"("status": 200, "chunked": true)", "bytes", false},
        {R"("status": 200, "body": "<html>Pay here</html>", "headers": {"Content-Type": "text/html"})", "bytes", false},
        {R"("status": 200, "body": "<html>Pay here</html>", "chunked": true)", "bytes", false},
        {R"("real": true, "headers": {"Content-Length": "3", "Connection": "close"})", "bytes", false},
        {R"("real": true)", "bytes", true},
    };
    for (const auto& [fault, bytes, is_whole] : cases) {
        Tests::WriteBytes(m_path, bytes);
        m_callback = Qorv::Create<CacheCallback>(OwnName(L"/a"), MissingFile::Fails);
        Tests::Service::AddFault(R"({"path": "2/files/download", )" + std::string(fault) + "}");
        std::string received;
        HRESULT result = S_OK;
        while (SUCCEEDED(result)) {
            result = Read(received.size(), 100);
            received += m_read;
        }
        EXPECT_EQ(is_whole, result == end_of_data) << fault;
        EXPECT_EQ(is_whole, received == bytes) << fault << received;
        const bool is_announced = std::string(fault).find("chunked") == std::string::npos;
        EXPECT_TRUE(is_whole || !is_announced || received.empty()) << fault << ": seen before the cache has a byte";
        Tests::Service::ClearFaults();
    }
}

// The cache has made room for the size that it was given.
TEST_F(CacheCallbackTest, AFileThatChangedSinceItsSizeWasToldIsNotFilledIn) {
    for (const char* const changed : {"longer than it was", "cut"})
        for (const bool is_chunked : {false, true}) {
            Prepare(L"/a");
            Tests::WriteBytes(m_path, "bytes");
            ULONGLONG size = 0;
            EXPECT_HRESULT(S_OK, m_callback->GetSize(&size, nullptr, nullptr));
            Tests::WriteBytes(m_path, changed);
            if (is_chunked)
                Tests::Service::AddFault(R"({"path": "2/files/download", "real": true, "chunked": true})");
            HRESULT result = Read(0, 100);
            if (is_chunked && SUCCEEDED(result))
                result = Read(m_read.size(), 100);
            EXPECT_HRESULT(E_FAIL, result) << changed;
            EXPECT_EQ(L"The file was changed after it had been opened: close it, and open it again", m_details->Text());

            Begin(4);
            EXPECT_HRESULT(S_OK, Write(0, "mine"));
            EXPECT_HRESULT(S_OK, End());
            EXPECT_HRESULT(S_OK, Read(0, 100)) << "the cache knows the size of what it has sent";
            EXPECT_EQ("mine", m_read);
        }
}

TEST_F(CacheCallbackTest, NoFile) {
    Prepare(L"/missing");
    ULONGLONG size = 1;
    EXPECT_HRESULT(E_FAIL, Read(0, 1));
    EXPECT_EQ(L"File does not exist", m_details->Text());
    EXPECT_HRESULT(E_FAIL, m_callback->GetSize(&size, m_details, nullptr));
    EXPECT_EQ(L"File does not exist", m_details->Text());
    EXPECT_HRESULT(E_FAIL, m_callback->BeginWrite(m_details, nullptr));
    EXPECT_EQ(L"File does not exist", m_details->Text());
    EXPECT_EQ(0U, Calls("files/upload")) << "a callback of open existing creates nothing";
}

TEST_F(CacheCallbackTest, AnUploadRunsForward) {
    Prepare(L"/a");
    Tests::WriteBytes(m_path, "old");
    EXPECT_HRESULT(E_FAIL, Write(0, "x")) << "not begun";
    EXPECT_HRESULT(E_FAIL, End()) << "not begun";
    Begin(5);
    EXPECT_HRESULT(E_INVALIDARG, Write(0, ""));
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(E_FAIL, Write(0, "x"));
    EXPECT_EQ(L"Requested write position is not same as previous - random writting is not supported",
              m_details->Text());
    EXPECT_HRESULT(E_FAIL, End()) << "a refused write ends the upload";
    Begin(4);
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(E_FAIL, Write(3, "too long"));
    EXPECT_HRESULT(E_FAIL, Write(3, "s")) << "the upload has ended";
    EXPECT_HRESULT(E_FAIL, End());
    EXPECT_EQ("old", Remote());
    Begin(5);
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(E_FAIL, Read(3, 1)) << "not while it is written";
    Begin(5);
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_EQ("old", Remote());
    EXPECT_HRESULT(S_OK, Write(3, "er"));
    EXPECT_HRESULT(S_OK, End());
    EXPECT_EQ("newer", Remote());
    EXPECT_HRESULT(S_OK, Read(0, 100)) << "read and written again from 0";
    EXPECT_EQ("newer", m_read);
    Begin(0);
    EXPECT_HRESULT(S_OK, End());
    EXPECT_EQ("", Remote());
}

TEST_F(CacheCallbackTest, AnUploadThatDoesNotEndLeavesTheFile) {
    Prepare(L"/a");
    Tests::WriteBytes(m_path, "old");
    Begin(5);
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(E_FAIL, End()) << "too short";
    EXPECT_HRESULT(E_FAIL, End()) << "dropped";
    Begin(5);
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    Begin(5); // Again.
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->EndWrite(nullptr, m_canceled));
    EXPECT_HRESULT(E_FAIL, End()) << "given up";
    Begin(5);
    EXPECT_HRESULT(S_OK, Write(0, "newe"));
    m_callback.Reset();
    EXPECT_EQ("old", Remote());
}

TEST_F(CacheCallbackTest, AnUploadCountsWhenTheServiceHasAllOfIt) {
    Prepare(L"/a");
    Tests::WriteBytes(m_path, "old");
    Tests::Service::AddFault(
        R"({"path": "2/files/upload", "status": 200, "body": "{\"name\": \"a\", \"path_display\": \"/a\", )"
        R"(\"server_modified\": \"2020-01-02T03:04:05Z\", \"size\": 4}"})");
    for (const HRESULT expected : {E_FAIL, S_OK}) {
        Begin(5);
        EXPECT_HRESULT(S_OK, Write(0, "newer"));
        EXPECT_HRESULT(expected, End());
        EXPECT_EQ(SUCCEEDED(expected) ? "newer" : "old", Remote());
        EXPECT_EQ(SUCCEEDED(expected) ? L"" : L"The service received another number of bytes than were sent",
                  m_details->Text());
    }
}

TEST_F(CacheCallbackTest, ANewFileIsCreatedWhenItsUploadBegins) {
    Prepare(L"/a", MissingFile::IsCreated);
    EXPECT_FALSE(std::filesystem::exists(m_path));
    Begin(3);
    EXPECT_TRUE(std::filesystem::exists(m_path));
    EXPECT_HRESULT(S_OK, Write(0, "new"));
    EXPECT_HRESULT(S_OK, End());
    EXPECT_EQ("new", Remote());
    EXPECT_EQ(2U, Calls("files/upload"));

    Prepare(L"/a", MissingFile::IsCreated);
    Begin(5);
    EXPECT_EQ("new", Remote()) << "a file that is there is not emptied ahead of its upload";
}

TEST_F(CacheCallbackTest, CancelComesFirst) {
    Prepare(L"/a");
    Tests::WriteBytes(m_path, "bytes");
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->Read(9, nullptr, 0, nullptr, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->Write(9, nullptr, 0, nullptr, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->SetSize(1, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->GetSize(nullptr, nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->BeginWrite(nullptr, m_canceled));
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->EndWrite(nullptr, m_canceled));
    EXPECT_TRUE(Tests::Service::Requests().empty());
    EXPECT_HRESULT(S_OK, Read(0, 2));
    ULONG count = 0;
    char byte = 0;
    EXPECT_HRESULT(Qorv::ErrorCanceled, m_callback->Read(2, &byte, 1, &count, nullptr, m_canceled));
    EXPECT_HRESULT(S_OK, Read(0, 5)) << "a retry starts anew";
    EXPECT_EQ("bytes", m_read);
}

} // namespace
