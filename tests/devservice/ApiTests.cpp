#include "LocalService.h"

using namespace DevService;

namespace {

const char* const unchanged = "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt b.txt";

class Api : public LocalService {};

/// Each row begins with the fixture's folder: what is asked, what is answered, and what is there afterwards.
TEST_F(Api, AnswersCallsLikeThePublicService) {
    struct Row {
        const char* route;
        const char* arguments;
        unsigned status;
        const char* part; ///< of the reply's body
        const char* tree;
    };
    const Row rows[] = {
        // Lookups ignore case and keep it.
        {"files/get_metadata", R"({"path": "/DOCS/A.TXT"})", 200, R"("path_display":"/Docs/a.txt")", unchanged},
        {"files/get_metadata", R"({"path": "/docs/sub"})", 200, R"(".tag":"folder","name":"Sub")", unchanged},
        {"files/get_metadata", R"({"path": "/Docs/a.txt", "include_media_info": false})", 200, R"("size":5)",
         unchanged},
        {"files/get_metadata", R"({"path": "/nope"})", 409, R"("error":{".tag":"path","path":{".tag":"not_found"}})",
         unchanged},
        {"files/get_metadata", R"({"path": "/b.txt/below"})", 409, "path/not_found/", unchanged},

        // Arguments that cannot be read.
        {"files/get_metadata", R"({"path": ""})", 400,
         R"(Error in call to API function "files/get_metadata": request body: path: The root folder is unsupported.)",
         unchanged},
        {"files/get_metadata", R"({"path": "b.txt"})", 400,
         "path: 'b.txt' did not match pattern '(/(.|[\\r\\n])*|id:", unchanged},
        {"files/get_metadata", R"({"path": 7})", 400, "path: expected string, got integer", unchanged},
        {"files/get_metadata", R"({"path": "/b.txt", "odd": 1})", 400, "request body: unknown field 'odd'", unchanged},
        {"files/get_metadata", R"({"path": "/b"quote.txt"})", 400, "could not decode input as JSON", unchanged},
        {"files/get_metadata", "[]", 400, "expected object, got list", unchanged},
        {"files/get_metadata", "", 400, "could not decode input as JSON", unchanged},
        {"files/list_folder", R"({"path": "/"})", 400, "Specify the root folder as an empty string", unchanged},
        {"files/list_folder", R"({"path": "", "limit": 2001})", 400, "limit: not within range", unchanged},
        {"users/get_current_account", "{}", 400, "request body: expected null, got value", unchanged},
        {"users/get_current_account", "", 400, "could not decode input as JSON", unchanged}, // its type is declared
        {"users/get_current_account", "null", 200, R"("display_name":"Dana Sample")", unchanged},

        // Malformed paths, and names that the service refuses.
        {"files/create_folder", R"({"path": "/a\\b"})", 409, "path/malformed_path/", unchanged},
        {"files/create_folder", R"({"path": "/a/"})", 409, "path/malformed_path/", unchanged},
        {"files/create_folder", R"({"path": "/a "})", 409, "path/malformed_path/", unchanged},
        {"files/create_folder", R"({"path": "//a"})", 409, "path/malformed_path/", unchanged},
        {"files/create_folder", R"({"path": "/Docs/../../out"})", 409, "path/malformed_path/", unchanged},
        {"files/create_folder", R"({"path": "/Thumbs.db"})", 409, "path/disallowed_name/", unchanged},
        {"files/create_folder", R"({"path": "/~$lock.docx"})", 409, "path/disallowed_name/", unchanged},

        // Changes and conflicts.
        {"files/create_folder", R"({"path": "/New/Deep", "autorename": false})", 200,
         R"({"name":"Deep","path_lower":"/new/deep","path_display":"/New/Deep","id":"id:)",
         "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt New/ New/Deep/ b.txt"},
        {"files/create_folder", R"({"path": "/docs"})", 409,
         R"("path":{".tag":"conflict","conflict":{".tag":"folder"}})", unchanged},
        {"files/create_folder", R"({"path": "/B.TXT"})", 409, "path/conflict/file/", unchanged},
        {"files/create_folder", R"({"path": "/b.txt/below"})", 409, "path/conflict/file_ancestor/", unchanged},
        {"files/create_folder_v2", R"({"path": "/Docs", "autorename": true})", 200,
         R"-({"metadata": {"name":"Docs (1)")-", "Docs (1)/ Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt b.txt"},
        {"files/delete", R"({"path": "/docs"})", 200, R"({".tag":"folder","name":"Docs")", "b.txt"},
        {"files/delete_v2", R"({"path": "/b.TXT"})", 200, R"({"metadata": {".tag":"file","name":"b.txt")",
         "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt"},
        {"files/delete", R"({"path": "/nope"})", 409, "path_lookup/not_found/", unchanged},
        {"files/delete", R"({"path": "/b.txt", "parent_rev": "123456789"})", 409, "path_write/conflict/file/",
         unchanged},
        {"files/delete_batch", R"({"entries": [{"path": "/DOCS"}]})", 200,
         R"({".tag": "complete", "entries": [{".tag": "success", "metadata": {".tag":"folder","name":"Docs")", "b.txt"},
        {"files/delete_batch", R"({"entries": [{"path": "/b.txt"}, {"path": "/nope"}]})", 200,
         R"({".tag": "async_job_id", "async_job_id": ")", "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt"},
        {"files/delete_batch", R"({"entries": [{"path": "/b.txt"}, {"path": "nope"}]})", 400,
         "request body: entries: path: 'nope' did not match pattern", unchanged},
        {"files/delete", R"({"path": "/"})", 409, "path_lookup/malformed_path/", unchanged},
        {"files/copy",
         R"({"from_path": "/docs","to_path": "/New/Copy","allow_shared_folder": true,"autorename": false,)"
         R"("allow_ownership_transfer": true})",
         200, R"({".tag":"folder","name":"Copy")",
         "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt New/ New/Copy/ New/Copy/Sub/ New/Copy/Sub/deep.txt "
         "New/Copy/a.txt b.txt"},
        {"files/move", R"({"from_path": "/B.txt", "to_path": "/docs/c.txt"})", 200,
         R"("path_lower":"/docs/c.txt","path_display":"/Docs/c.txt")",
         "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt Docs/c.txt"},
        {"files/move_v2", R"({"from_path": "/b.txt", "to_path": "/Docs/A.txt", "autorename": true})", 200,
         R"({"metadata": {".tag":"file","name":"A (1).txt")",
         "Docs/ Docs/A (1).txt Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt"},
        {"files/move", R"({"from_path": "/b.txt", "to_path": "/docs/A.TXT"})", 409, "to/conflict/file/", unchanged},
        {"files/move", R"({"from_path": "/b.txt", "to_path": "/docs"})", 409, "to/conflict/folder/", unchanged},
        {"files/move", R"({"from_path": "/nope", "to_path": "/x"})", 409, "from_lookup/not_found/", unchanged},
        {"files/move", R"({"from_path": "/docs", "to_path": "/Docs/Sub/x"})", 409, "cant_move_folder_into_itself/",
         unchanged},
        {"files/copy", R"({"from_path": "/docs", "to_path": "/Docs/x"})", 409, "duplicated_or_nested_paths/",
         unchanged},
        {"files/move", R"({"from_path": "/b.txt", "to_path": "/b.txt"})", 409, "duplicated_or_nested_paths/",
         unchanged},
        {"files/move", R"({"from_path": "/b.txt", "to_path": "/B.txt"})", 200, R"("path_display":"/b.txt")", unchanged},
        {"files/nope", "{}", 404, "Error (404)", unchanged},
        {"files/upload", "{}", 404, "Error (404)", unchanged}, // belongs to the other host
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.route) + " " + row.arguments);
        Populate();
        const Answer answer = Rpc(row.route, row.arguments);
        EXPECT_EQ(answer.result_int(), row.status);
        EXPECT_NE(answer.body().find(row.part), std::string::npos) << answer.body();
        EXPECT_EQ(Tree(), row.tree);
    }
}

TEST_F(Api, ReadsArgumentsOfAnyDepth) {
    const std::string deep(1'000'000, '[');
    EXPECT_EQ(Rpc("files/get_metadata", deep).result_int(), 400);
    const std::string closed = R"({"path": )" + deep + std::string(deep.size(), ']') + "}";
    EXPECT_EQ(Rpc("files/get_metadata", closed).result_int(), 400);
}

TEST_F(Api, ChecksTheToken) {
    const auto status = [&](const std::string& i_header) {
        return Connect(api_host).Post("/2/users/get_current_account", i_header, "");
    };
    const auto summary = [&](const std::string& i_header) { return Member(Json(status(i_header)), "error_summary"); };
    EXPECT_EQ(status(Authorization()).result_int(), 200u);
    const Answer refused = status("");
    EXPECT_EQ(refused.result_int(), 401u);
    EXPECT_TRUE(refused["WWW-Authenticate"].starts_with("Bearer "));
    EXPECT_TRUE(summary("Authorization:Bearer bla-bla\r\n").starts_with("invalid_access_token/"));
    EXPECT_EQ(status("Authorization: Basic QQ==\r\n").result_int(), 400u);

    const auto bearer = [](const std::string& i_json) {
        rapidjson::Document document;
        ParseJson(i_json, document);
        return "Authorization:Bearer " + Member(document, "access_token") + "\r\n";
    };
    const std::string second = bearer(Control("POST", "tokens", R"({"user": 1})"));
    EXPECT_EQ(Member(Json(status(second))["name"], "display_name"), "Robin <second> & Co");
    const std::string expired = bearer(Control("POST", "tokens", R"({"user": 0, "expires_in": 0})"));
    EXPECT_TRUE(summary(expired).starts_with("expired_access_token/"));

    // A revoked token is gone, the account's other tokens are not.
    const std::string other = bearer(Control("POST", "tokens", R"({})"));
    const Answer revoked = Connect(api_host).Post("/2/auth/token/revoke", other, "");
    EXPECT_EQ(revoked.body(), "null");
    EXPECT_TRUE(summary(other).starts_with("invalid_access_token/"));
    EXPECT_EQ(status(Authorization()).result_int(), 200u);
}

/// "\u00e9" and "e\u0301" are one name; what clients see is the first, whatever the folder holds.
TEST_F(Api, ShowsAndFindsNamesInTheirComposedForm) {
    const std::string composed = "Caf\xC3\xA9", decomposed = "Cafe\xCC\x81";
    WriteFile(decomposed + ".txt", "old");
    const std::string shown = R"("path_display":"/Caf\u00E9.txt")";
    EXPECT_NE(Rpc("files/list_folder", R"({"path": ""})").body().find(shown), std::string::npos);
    for (const std::string name : {R"(Caf\u00e9)", R"(CAFE\u0301)"})
        EXPECT_NE(Rpc("files/get_metadata", R"({"path": "/)" + name + R"(.txt"})").body().find(shown),
                  std::string::npos);

    EXPECT_EQ(Upload(R"({"path": "/Cafe\u0301.txt", "mode": "overwrite"})", "new").result_int(), 200u);
    EXPECT_EQ(ReadFile(decomposed + ".txt"), "new");
    EXPECT_EQ(Tree(), decomposed + ".txt " + unchanged); // not a second one beside it
    Rpc("files/move", R"({"from_path": "/Caf\u00e9.txt", "to_path": "/Cafe\u0301/n\u0303.txt"})");
    EXPECT_EQ(Tree(), composed + "/ " + composed + "/\xC3\xB1.txt " + unchanged);
}

TEST_F(Api, FollowsAnItemByItsIdAndChangesItsRevision) {
    const auto describe = [&](const std::string& i_path) {
        return Json(Rpc("files/get_metadata", R"({"path": ")" + i_path + R"("})"));
    };
    const std::string id = Member(describe("/b.txt"), "id");
    const std::string revision = Member(describe("/b.txt"), "rev");
    EXPECT_EQ(id.size(), 25u);
    EXPECT_EQ(Member(describe("rev:" + revision), "name"), "b.txt");
    Upload(R"({"path": "/b.txt", "mode": "overwrite"})", "other");
    EXPECT_EQ(Member(describe("/b.txt"), "id"), id);
    EXPECT_NE(Member(describe("/b.txt"), "rev"), revision);
    Rpc("files/move", R"({"from_path": "/b.txt", "to_path": "/Docs/moved.txt"})");
    EXPECT_EQ(Member(describe(id), "path_display"), "/Docs/moved.txt");
    EXPECT_NE(Member(Json(Rpc("files/copy", R"({"from_path": ")" + id + R"(", "to_path": "/c.txt"})")), "id"), id);
}

TEST_F(Api, ServesOnlyItsHostsAndNothingOutsideTheFolder) {
    EXPECT_THROW(Connect("example.com"), std::runtime_error);
    EXPECT_TRUE(
        ExchangeClear(m_server->Port(), "CONNECT example.com:443 HTTP/1.1\r\n\r\n").starts_with("HTTP/1.1 403"));
    std::filesystem::create_symlink("/etc", m_folder / "first/link");
    EXPECT_EQ(Rpc("files/get_metadata", R"({"path": "/link"})").result_int(), 409u);
    EXPECT_EQ(Rpc("files/get_metadata", R"({"path": "/link/passwd"})").result_int(), 409u);
    EXPECT_EQ(Rpc("files/list_folder", R"({"path": ""})").body().find("link"), std::string::npos);
    const Answer answer = Upload(R"({"path": "/link", "mode": "overwrite"})", "x");
    EXPECT_NE(answer.body().find("no_write_permission"), std::string::npos) << answer.body();
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "first/link"));
}

} // namespace
