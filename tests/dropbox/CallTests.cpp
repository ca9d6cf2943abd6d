// The bytes of every call as they reach the service.

#include "dropbox/DropboxTest.h"

#include "core/trace/Text.h"

#include <functional>
#include <regex>

using namespace Tests;

namespace {

constexpr char json_accept[] = "application/json; odata=verbose";
constexpr char json_content[] = "Content-Type: application/json\r\n";
constexpr char upload_modes[] = ",\"mode\": \"overwrite\",\"autorename\": false,\"mute\": false}\r\n";

class CallTest : public DropboxTest {
protected:
    CallTest() {
        MakeFolder(L"/Documents");
        MakeFile(L"/Documents/a.txt");
        MakeFile(L"/Résumé.txt");
    }

    /// The header lines that the call itself asked for, without those that all calls have.
    static std::string OwnFields(const Service::Request& i_request) {
        static const std::regex common("(Host|Connection|User-Agent|Accept|Content-Length|Authorization): [^\r]*\r\n",
                                       std::regex::icase);
        return std::regex_replace(i_request.fields, common, "");
    }
};

TEST_F(CallTest, HaveTheirForm) {
    const auto upload = [](const std::shared_ptr<SharePoint::Object>& i_object, const std::string& i_content) {
        auto request = i_object->AsFile()->OpenWrite(i_content.size());
        if (!i_content.empty())
            request.Write(i_content.data(), i_content.size());
        i_object->AsFile()->FinishWrite(request);
    };
    struct {
        const char* name;
        std::function<void()> call;
        const char* line;
        const char* host;
        const char* accept;
        std::string fields;
        std::string body;
    } const rows[] = {
        {"current account", [&] { m_web->Refresh(); }, "2/users/get_current_account", DROPBOX_API_HOST, json_accept, "",
         ""},
        {"metadata", [&] { m_web->BindObject(L"/Résumé.txt", Kind::any); }, "2/files/get_metadata", DROPBOX_API_HOST,
         json_accept, json_content,
         "{\"path\": \"/Résumé.txt\",\"include_media_info\": false,\"include_deleted\": false,"
         "\"include_has_explicit_shared_members\": false}"},
        {"list of the root", [&] { m_web->GetChildren(); }, "2/files/list_folder", DROPBOX_API_HOST, json_accept,
         json_content,
         "{\"path\": \"\",\"recursive\": false,\"include_media_info\": false,\"include_deleted\": false,"
         "\"include_has_explicit_shared_members\": false}"},
        {"list of a folder", [&] { Bind(L"/Documents")->AsFolder()->GetChildren(); }, "2/files/list_folder",
         DROPBOX_API_HOST, json_accept, json_content,
         "{\"path\": \"//Documents\",\"recursive\": false,\"include_media_info\": false,\"include_deleted\": false,"
         "\"include_has_explicit_shared_members\": false}"},
        {"refresh", [&] { Bind(L"/Documents/a.txt")->Refresh(); }, "2/files/get_metadata", DROPBOX_API_HOST,
         json_accept, json_content,
         "{\"path\": \"/Documents/a.txt\",\"include_media_info\": false,\"include_deleted\": false,"
         "\"include_has_explicit_shared_members\": false}"},
        {"empty file", [&] { m_web->CreateFile(L"/new.txt"); }, "2/files/upload", DROPBOX_CONTENT_HOST, json_accept,
         std::string("Dropbox-API-Arg: {\"path\": \"/new.txt\"") + upload_modes +
             "Content-Type: application/octet-stream\r\n",
         ""},
        {"folder", [&] { m_web->CreateFolder(L"/Neu ü"); }, "2/files/create_folder", DROPBOX_API_HOST, json_accept,
         json_content, "{\"path\": \"/Neu ü\",\"autorename\": false}"},
        {"download", [&] { Bind(L"/Résumé.txt")->AsFile()->OpenRead(); }, "2/files/download", DROPBOX_CONTENT_HOST,
         "application/octet-stream", "Dropbox-API-Arg: {\"path\": \"/R\\u00e9sum\\u00e9.txt\"}\r\n", ""},
        {"upload", [&] { upload(Bind(L"/Résumé.txt"), "new"); }, "2/files/upload", DROPBOX_CONTENT_HOST, "*/*",
         std::string(
             "Content-Type: application/octet-stream\r\nDropbox-API-Arg: {\"path\": \"/R\\u00e9sum\\u00e9.txt\"") +
             upload_modes,
         "new"},
        {"upload of nothing", [&] { upload(Bind(L"/Résumé.txt"), ""); }, "2/files/upload", DROPBOX_CONTENT_HOST, "*/*",
         std::string(
             "Content-Type: application/octet-stream\r\nDropbox-API-Arg: {\"path\": \"/R\\u00e9sum\\u00e9.txt\"") +
             upload_modes,
         ""},
        {"copy", [&] { Bind(L"/Documents/a.txt")->AsFile()->CopyTo(L"/b ü.txt"); }, "2/files/copy", DROPBOX_API_HOST,
         "*/*", json_content,
         "{\"from_path\": \"/Documents/a.txt\",\"to_path\": \"/b ü.txt\",\"allow_shared_folder\": true,"
         "\"autorename\": false,\"allow_ownership_transfer\": true}"},
        {"move", [&] { Bind(L"/b ü.txt")->AsFile()->MoveTo(L"/c.txt"); }, "2/files/move", DROPBOX_API_HOST, "*/*",
         json_content,
         "{\"from_path\": \"/b ü.txt\",\"to_path\": \"/c.txt\",\"allow_shared_folder\": true,"
         "\"autorename\": false,\"allow_ownership_transfer\": true}"},
        {"rename of a folder", [&] { Bind(L"/Neu ü")->Rename(L"/Neuer"); }, "2/files/move", DROPBOX_API_HOST, "*/*",
         json_content,
         "{\"from_path\": \"/Neu ü\",\"to_path\": \"/Neuer\",\"allow_shared_folder\": true,"
         "\"autorename\": false,\"allow_ownership_transfer\": true}"},
        {"delete", [&] { Bind(L"/Documents")->Delete(); }, "2/files/delete", DROPBOX_API_HOST, "*/*", json_content,
         "{\"path\": \"/Documents\"}"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Service::ClearRequests();
        row.call();
        const auto requests = Service::Requests();
        ASSERT_EQ(requests.size(), 1u);
        const Service::Request& request = requests.front();
        EXPECT_EQ(request.line, std::string("POST /") + row.line + " HTTP/1.1");
        EXPECT_EQ(request.host, row.host);
        EXPECT_EQ(request.Field("Accept"), row.accept);
        EXPECT_EQ(request.Field("Content-Length"), std::to_string(row.body.size()));
        EXPECT_EQ("Authorization:" + request.Field("Authorization") + "\n", ToUtf8(Service::AuthorizationHeader()));
        EXPECT_EQ(OwnFields(request), row.fields);
        EXPECT_EQ(request.body, row.body);
        EXPECT_EQ(request.status, 200u);
    }
    EXPECT_EQ(Content(L"/Résumé.txt"), "");
    EXPECT_TRUE(Exists(L"/new.txt") && Exists(L"/c.txt") && Exists(L"/Neuer"));
    EXPECT_FALSE(Exists(L"/Documents") || Exists(L"/b ü.txt") || Exists(L"/Neu ü"));
}

TEST_F(CallTest, ReadsTheAccount) {
    EXPECT_EQ(m_web->GetUserInformation()._id, L"");
    EXPECT_TRUE(Service::Requests().empty()) << "a new client sends nothing";
    m_web->Refresh();
    EXPECT_EQ(m_web->GetUserInformation()._name, L"Ada Example");
    EXPECT_TRUE(m_web->GetUserInformation()._id.starts_with(L"dbid:"));
}

TEST_F(CallTest, RevokesAToken) {
    const std::wstring header = L"Authorization:Bearer " + FromUtf8(Service::IssueToken()) + L"\n";
    Dropbox::RevokeToken(header);
    const auto requests = Service::Requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].line, "POST /2/auth/token/revoke HTTP/1.1");
    EXPECT_EQ(requests[0].Field("Accept"), "*/*");
    EXPECT_EQ(requests[0].Field("Content-Length"), "0");
    EXPECT_EQ(OwnFields(requests[0]), "");
    const Outcome outcome = OutcomeOf([&] { Dropbox::Web::Create(header)->Refresh(); });
    EXPECT_EQ(outcome.status, 401u);
    EXPECT_TRUE(outcome.error_summary.starts_with(L"invalid_access_token"));
}

TEST_F(CallTest, PathsGoIntoJsonAsTheyStand) {
    // Nothing is escaped: the service refuses text that is then not JSON.
    for (const wchar_t* const path : {L"/a\"b", L"/a\\"}) {
        SCOPED_TRACE(ToUtf8(path));
        EXPECT_EQ(OutcomeOf([&] { m_web->BindObject(path, Kind::any); }).status, 400u);
    }
}

TEST_F(CallTest, PathsThatWouldNameOtherItemsAreRefused) {
    // In a shared folder, such a name would cause another file to be read, replaced or deleted.
    Service::ClearRequests();
    for (const wchar_t* const path :
         {L"/a\",\"path\": \"/important.pdf", L"/important\\u002epdf", L"/half of a pair \\uDC00"}) {
        SCOPED_TRACE(ToUtf8(path));
        const auto file = Dropbox::Object::Create({._name = L"n", ._path = path, ._is_folder = false}, m_web);
        const auto folder = Dropbox::Object::Create({._name = L"n", ._path = path}, m_web);
        const std::function<void()> calls[] = {[&] { file->Delete(); },          [&] { file->OpenRead(); },
                                               [&] { file->OpenWrite(1); },      [&] { file->MoveTo(L"/b"); },
                                               [&] { file->Refresh(); },         [&] { folder->GetChildren(); },
                                               [&] { m_web->CreateFile(path); }, [&] { m_web->CreateFolder(path); }};
        for (const auto& call : calls)
            EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_INVALID_NAME), OutcomeOf(call).code);
    }
    EXPECT_TRUE(Service::Requests().empty());
}

TEST_F(CallTest, PathsThatNoRequestCanCarryAreRefused) {
    using namespace std::string_literals;
    Service::ClearRequests();
    for (const std::wstring& path :
         {L"/a\xD800.txt"s, L"/\xDE00\xD83D"s, L"/line\nbreak"s, L"/tab\t"s, L"/nul\0.txt"s}) {
        SCOPED_TRACE(ToUtf8(path));
        const auto object = Dropbox::Object::Create({._name = L"n", ._path = path, ._is_folder = false}, m_web);
        const std::function<void()> calls[] = {[&] { object->OpenRead(); },       [&] { object->OpenWrite(1); },
                                               [&] { object->Delete(); },         [&] { object->Refresh(); },
                                               [&] { object->MoveTo(L"/b"); },    [&] { m_web->CreateFile(path); },
                                               [&] { m_web->CreateFolder(path); }};
        for (const auto& call : calls)
            EXPECT_HRESULT(HRESULT_FROM_WIN32(ERROR_INVALID_NAME), OutcomeOf(call).code);
    }
    EXPECT_TRUE(Service::Requests().empty());
}

TEST_F(CallTest, AReplyThatNamesAnotherItemIsAFailure) {
    struct {
        const wchar_t* path;
        const char* answered; // Members of the reply.
        bool is_good;
    } const rows[] = {
        {L"/Café.txt", R"("name": "CAFÉ.TXT", "path_display": "/CAFÉ.TXT")", true},
        {L"/Cafe\u0301.txt", R"("name": "Café.txt", "path_display": "/Café.txt")", true},
        {L"/Café.txt", R"("name": "Café.txt")", true},
        {L"/CafÃ©.txt", R"("name": "Café.txt", "path_display": "/Café.txt")", false},
        {L"/CafÃ©.txt", R"("name": "Café.txt")", false},
        {L"/straße.txt", R"("name": "strasse.txt", "path_display": "/strasse.txt")", false},
        {L"/a\u200d.txt", R"("name": "a.txt", "path_display": "/a.txt")", false},
        {L"/Documents/a.txt", R"("name": "a.txt", "path_display": "/a.txt")", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(ToUtf8(row.path)) + " " + row.answered);
        const std::string reply =
            std::string("{") + row.answered + R"(, "server_modified": "2026-01-02T03:04:05Z", "size": 3})";
        std::string quoted;
        for (const char c : reply)
            quoted += c == '"' ? "\\\"" : std::string(1, c);
        const std::string fault = R"({"path": "2/files/upload", "times": 2, "body": ")" + quoted + "\"}";
        Service::AddFault(fault);
        Service::AddFault(R"({"path": "2/files/create_folder", "body": ")" + quoted + "\"}");
        const auto object = Dropbox::Object::Create({._name = L"n", ._path = row.path, ._is_folder = false}, m_web);
        const Outcome created = OutcomeOf([&] { m_web->CreateFile(row.path); });
        const Outcome written = OutcomeOf([&] {
            auto request = object->OpenWrite(3);
            request.Write("new", 3);
            object->FinishWrite(request);
        });
        const Outcome folder = OutcomeOf([&] { m_web->CreateFolder(row.path); });
        EXPECT_EQ(created.type, row.is_good ? "" : "Exception");
        EXPECT_EQ(folder.type, row.is_good ? "" : "Exception");
        EXPECT_EQ(written.type, row.is_good ? "" : "Exception");
        EXPECT_EQ(object->GetInformation()._size, row.is_good ? 3u : 0u);
        EXPECT_TRUE(object->GetInformation()._path.starts_with(L'/'));
    }
}

} // namespace
