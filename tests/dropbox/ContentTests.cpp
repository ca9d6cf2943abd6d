// Uploading and downloading documents.

#include "dropbox/DropboxTest.h"

#include "support/Content.h"

#include <algorithm>

using namespace Tests;

namespace {

class ContentTest : public DropboxTest {
protected:
    static void WriteAll(Http::Request& io_request, const std::string& i_content) {
        constexpr std::size_t piece_size = 65536;
        for (std::size_t written = 0; written < i_content.size();) {
            const std::uint32_t count =
                io_request.Write(&i_content[written], std::min(piece_size, i_content.size() - written));
            ASSERT_GT(count, 0u);
            written += count;
        }
    }
};

TEST_F(ContentTest, ArrivesWhole) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{65537}, std::size_t{64} << 20}) {
        SCOPED_TRACE(size);
        const std::string content = RandomBytes(size);
        MakeFile(L"/document.bin", "an older version, which is replaced");
        const auto object = Bind(L"/document.bin");
        auto request = object->AsFile()->OpenWrite(size);
        WriteAll(request, content);
        object->AsFile()->FinishWrite(request);

        const auto requests = Service::Requests();
        ASSERT_EQ(requests.size(), 1u) << "the new record costs no request of its own";
        EXPECT_EQ(requests[0].body_sha256, Sha256(content));
        EXPECT_EQ(object->GetInformation()._size, size);
        EXPECT_EQ(object->GetInformation()._path, L"/document.bin");
        EXPECT_TRUE(Content(L"/document.bin") == content);
        EXPECT_TRUE(ReadAll(object->AsFile()->OpenRead()) == content);
    }
}

TEST_F(ContentTest, AFailedUploadLeavesFileAndRecord) {
    struct {
        const char* name;
        const char* fault;
        bool is_written; // The file was written; only the reply is bad.
    } const rows[] = {
        {"refused", R"("status": 507)", false},
        {"no token any more", R"("status": 401)", false},
        {"answer is no JSON", R"("real": true, "body": "<html>")", true},
        {"answer is empty", R"("real": true, "body": "")", true},
        {"answer has no size", R"("real": true, "body": "{\"name\": \"a\"}")", true},
        {"answer is cut", R"("real": true, "truncate_body": 20)", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        MakeFile(L"/document.bin", "old");
        const auto object = Bind(L"/document.bin");
        Service::AddFault(std::string(R"({"path": "2/files/upload", )") + row.fault + "}");
        auto request = object->AsFile()->OpenWrite(10);
        WriteAll(request, "new bytes!");
        EXPECT_NE(OutcomeOf([&] { object->AsFile()->FinishWrite(request); }).type, "");
        EXPECT_EQ(Content(L"/document.bin"), row.is_written ? "new bytes!" : "old");
        EXPECT_EQ(object->GetInformation()._size, 3u);
    }
}

TEST_F(ContentTest, AConnectionThatBreaksDuringAnUploadFailsIt) {
    MakeFile(L"/document.bin", "old");
    const auto object = Bind(L"/document.bin");
    Service::AddFault(R"({"path": "2/files/upload", "drop_request_after": 1000000})");
    const std::string content = RandomBytes(5'000'000);
    EXPECT_NE(OutcomeOf([&] {
                  auto request = object->AsFile()->OpenWrite(content.size());
                  WriteAll(request, content);
                  object->AsFile()->FinishWrite(request);
              }).type,
              "");
    EXPECT_EQ(Content(L"/document.bin"), "old");
    EXPECT_EQ(object->GetInformation()._size, 3u);
    EXPECT_EQ(ReadAll(object->AsFile()->OpenRead()), "old") << "the client serves on";
}

TEST_F(ContentTest, ADownloadThatBreaksOffIsNoWholeOne) {
    MakeFile(L"/document.bin", RandomBytes(100'000));
    const auto object = Bind(L"/document.bin");
    for (const int size : {0, 1, 50'000, 99'999}) {
        SCOPED_TRACE(size);
        Service::AddFault(R"({"path": "2/files/download", "real": true, "truncate_body": )" + std::to_string(size) +
                          "}");
        EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_INTERNET_CONNECTION_ABORTED),
                       OutcomeOf([&] { ReadAll(object->AsFile()->OpenRead()); }).code);
    }
    EXPECT_EQ(ReadAll(object->AsFile()->OpenRead()).size(), 100'000u);
}

} // namespace
