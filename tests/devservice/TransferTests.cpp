#include "LocalService.h"

using namespace DevService;

namespace {

const char* const unchanged = "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt b.txt";

class Transfer : public LocalService {
protected:
    Answer CallSession(const std::string& i_route, const std::string& i_arguments, std::string_view i_body) const {
        const std::string headers = Authorization() + "Content-Type: application/octet-stream\r\nDropbox-API-Arg: ";
        return Connect(content_host).Post("/2/files/upload_session/" + i_route, headers + i_arguments + "\r\n", i_body);
    }

    /// Waits until that many requests are recorded: a dropped one has no reply to wait for.
    rapidjson::Document WaitForRequests(std::size_t i_count) const {
        while (true) {
            rapidjson::Document requests = Requests();
            if (requests.Size() >= i_count)
                return requests;
            std::this_thread::yield();
        }
    }
};

TEST_F(Transfer, UploadsInEveryMode) {
    struct Row {
        const char* arguments;
        const char* body;
        unsigned status;
        const char* part;
        const char* tree;
        const char* content; ///< of b.txt afterwards
    };
    const char* const in_new_folder = "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt New/ New/n.txt b.txt";
    const Row rows[] = {
        {R"({"path": "/b.txt","mode": "overwrite","autorename": false,"mute": false})", "new", 200,
         R"({"name":"b.txt","path_lower":"/b.txt")", unchanged, "new"},
        {R"({"path": "/b.txt","mode": "overwrite"})", "", 200, R"("size":0)", unchanged, ""},
        {R"({"path": "/New/n.txt"})", "n", 200, R"("path_display":"/New/n.txt")", in_new_folder, "beta"},
        {R"({"path": "/b.txt"})", "new", 409,
         R"("error":{".tag":"path","reason":{".tag":"conflict","conflict":{".tag":"file"}},"upload_session_id":")",
         unchanged, "beta"},
        {R"({"path": "/B.TXT"})", "new", 409, "path/conflict/file/", unchanged, "beta"},
        {R"({"path": "/b.txt"})", "beta", 200, R"("size":4)", unchanged, "beta"},
        {R"({"path": "/b.txt", "strict_conflict": true})", "beta", 409, "path/conflict/file/", unchanged, "beta"},
        {R"({"path": "/b.txt", "autorename": true})", "new", 200, R"("name":"b (1).txt")",
         "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt b (1).txt b.txt", "beta"},
        {R"({"path": "/b.txt", "mode": {".tag": "update", "update": "123456789"}})", "new", 409, "path/conflict/file/",
         unchanged, "beta"},
        {R"({"path": "/docs", "mode": "overwrite"})", "new", 409, "path/conflict/folder/", unchanged, "beta"},
        {R"({"path": "/b.txt/x", "mode": "overwrite"})", "new", 409, "path/conflict/file_ancestor/", unchanged, "beta"},
        {R"({"path": "/B.txt", "mode": "overwrite"})", "new", 200, R"("path_display":"/B.txt")",
         "B.txt Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt", ""},
        {R"({"path": "/b.txt", "mode": "overwrite", "client_modified": "2015-05-12T15:50:38Z"})", "new", 200,
         R"("client_modified":"2015-05-12T15:50:38Z")", unchanged, "new"},
        {R"({"path": "/b.txt", "mode": "overwrite", "client_modified": "2015-13-12T15:50:38Z"})", "new", 400,
         "client_modified: time data", unchanged, "beta"},
        {R"({"path": "/b.txt", "mode": "overwrite", "content_hash": "00"})", "new", 409, "content_hash_mismatch/",
         unchanged, "beta"},
        {R"({"path": "/b.txt", "mode": "replace"})", "new", 400, "mode: invalid value 'replace'", unchanged, "beta"},
        {R"({"path": "/.DS_Store"})", "new", 409, "path/disallowed_name/", unchanged, "beta"},
        {R"({"path": "/odd "quote".txt"})", "new", 400, "could not decode input as JSON", unchanged, "beta"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments);
        Populate();
        const Answer answer = Upload(row.arguments, row.body);
        EXPECT_EQ(answer.result_int(), row.status);
        EXPECT_NE(answer.body().find(row.part), std::string::npos) << answer.body();
        EXPECT_EQ(Tree(), row.tree);
        EXPECT_EQ(ReadFile("b.txt"), row.content);
    }
}

/// Whether its size is announced or not, a body that is too large is read to its end, so that clients see the refusal.
TEST_F(Transfer, RefusesMoreThanOneRequestMayBring) {
    m_service.max_upload = 1'000'000;
    const std::string good(1'000'000, 'g'), bad(1'000'001, 'b');
    const std::string head = Authorization() + "Content-Type: application/octet-stream\r\nDropbox-API-Arg: ";
    const std::string chunked = "Transfer-Encoding: chunked\r\n\r\n" + std::string("f4241\r\n") + bad + "\r\n0\r\n\r\n";
    const auto post = [&](const std::string& i_route, const std::string& i_arguments, const std::string& i_rest) {
        const std::string request = "POST /2/files/" + i_route + " HTTP/1.1\r\n" + head + i_arguments + "\r\n" + i_rest;
        ServiceClient client = Connect(content_host);
        client.Send(request);
        return client.Receive();
    };
    const auto counted = [](const std::string& i_body) {
        return "Content-Length: " + std::to_string(i_body.size()) + "\r\n\r\n" + i_body;
    };
    const std::string file = R"({"path": "/b.txt", "mode": "overwrite"})";
    const auto expect_refusal = [](const Answer& i_answer) {
        EXPECT_EQ(i_answer.result_int(), 409u);
        EXPECT_NE(i_answer.body().find(R"("error":{".tag":"payload_too_large"}})"), std::string::npos)
            << i_answer.body();
    };
    expect_refusal(post("upload", file, counted(bad)));
    expect_refusal(post("upload", file, chunked));
    EXPECT_EQ(ReadFile("b.txt"), "beta");
    EXPECT_EQ(post("upload", file, counted(good)).result_int(), 200u);

    expect_refusal(post("upload_session/start", "{}", counted(bad)));
    EXPECT_EQ(Tree(), unchanged);
    const std::string id = Member(Json(post("upload_session/start", "{}", counted(good))), "session_id");
    const std::string cursor = R"({"cursor": {"session_id": ")" + id + R"(", "offset": 1000000})";
    expect_refusal(post("upload_session/append_v2", cursor + "}", counted(bad)));
    EXPECT_EQ(post("upload_session/append_v2", cursor + "}", counted(good)).result_int(), 200u);
}

TEST_F(Transfer, UpdatesTheRevisionThatIsThere) {
    const std::string revision = Member(Json(Rpc("files/get_metadata", R"({"path": "/b.txt"})")), "rev");
    const std::string update = R"({"path": "/b.txt", "mode": {".tag": "update", "update": ")" + revision + R"("}})";
    EXPECT_EQ(Upload(update, "once").result_int(), 200u);
    EXPECT_EQ(Upload(update, "twice").result_int(), 409u);
    EXPECT_EQ(ReadFile("b.txt"), "once");
}

/// The old file stays intact when an upload breaks off, be it one byte before the end, and nothing is left behind.
TEST_F(Transfer, KeepsTheOldFileWhenAnUploadBreaksOff) {
    const std::string big(3'000'000, 'n');
    for (const std::size_t sent : {std::size_t{0}, std::size_t{1}, big.size() / 2, big.size() - 1}) {
        SCOPED_TRACE(sent);
        Control("DELETE", "requests");
        ServiceClient client = Connect(content_host);
        client.Send("POST /2/files/upload HTTP/1.1\r\n" + Authorization() +
                    "Content-Type: application/octet-stream\r\n"
                    "Dropbox-API-Arg: {\"path\": \"/b.txt\",\"mode\": \"overwrite\"}\r\ncontent-length:" +
                    std::to_string(big.size()) + "\r\n\r\n" + big.substr(0, sent));
        client.Drop();
        const rapidjson::Document requests = WaitForRequests(1);
        EXPECT_EQ(Member(requests[0], "complete"), "false");
        EXPECT_EQ(Member(requests[0], "body_size"), std::to_string(sent));
        EXPECT_EQ(Tree(), unchanged);
        EXPECT_EQ(ReadFile("b.txt"), "beta");
    }
}

TEST_F(Transfer, DownloadsTheBytes) {
    std::string bytes;
    for (int i = 0; i < 1'000'003; ++i)
        bytes += static_cast<char>(i * 31 + i / 251);
    WriteFile("Docs/bytes.bin", bytes);
    const Answer answer = Download("/docs/BYTES.bin");
    EXPECT_EQ(answer.result_int(), 200u);
    EXPECT_TRUE(answer.body() == bytes);
    rapidjson::Document result;
    ASSERT_TRUE(ParseJson({answer["Dropbox-API-Result"].data(), answer["Dropbox-API-Result"].size()}, result));
    EXPECT_EQ(Member(result, "size"), std::to_string(bytes.size()));
    EXPECT_EQ(Member(result, ".tag"), "<missing>");
    EXPECT_EQ(std::string(answer["ETag"]), "W/\"" + Member(result, "rev") + "\"");

    WriteFile("Minutes.Paper", ""); // edited online, cannot be downloaded
    const Answer online = Download("/Minutes.Paper");
    EXPECT_NE(online.body().find(R"("error":{".tag":"unsupported_file"}})"), std::string::npos) << online.body();
    const rapidjson::Document metadata = Json(Rpc("files/get_metadata", R"({"path": "/Minutes.Paper"})"));
    EXPECT_EQ(Member(metadata, "is_downloadable"), "false");

    const Answer folder = Download("/Docs");
    EXPECT_EQ(folder.result_int(), 409u);
    EXPECT_TRUE(folder.reason().starts_with("path/not_file/"));
    EXPECT_EQ(Download("/nope").result_int(), 409u);
}

TEST_F(Transfer, DownloadsRanges) {
    struct Row {
        const char* range;
        unsigned status;
        const char* body;
        const char* content_range;
    };
    const Row rows[] = {
        {"bytes=1-2", 206, "et", "bytes 1-2/4"},
        {"bytes=2-", 206, "ta", "bytes 2-3/4"},
        {"bytes=-1", 206, "a", "bytes 3-3/4"},
        {"bytes=0-99", 206, "beta", "bytes 0-3/4"},
        {"bytes=4-", 416, "", ""},
        {"bytes=3-1", 200, "beta", ""},
        {"lines=1-2", 200, "beta", ""},
    };
    ServiceClient client = Connect(content_host);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.range);
        const std::string headers =
            Authorization() + "Dropbox-API-Arg: {\"path\": \"/b.txt\"}\r\nRange: " + row.range + "\r\n";
        const Answer answer = client.Post("/2/files/download", headers, "");
        EXPECT_EQ(answer.result_int(), row.status);
        EXPECT_EQ(answer.body(), row.body);
        EXPECT_EQ(std::string(answer["Content-Range"]), row.content_range);
    }
}

TEST_F(Transfer, CollectsAnUploadInASession) {
    const auto call = [&](const std::string& i_route, const std::string& i_arguments, std::string_view i_body) {
        return CallSession(i_route, i_arguments, i_body);
    };
    const std::string id = Member(Json(call("start", "{}", "one ")), "session_id");
    const auto cursor = [&](int i_offset) {
        return R"({"cursor": {"session_id": ")" + id + R"(", "offset": )" + std::to_string(i_offset) + "}";
    };
    EXPECT_EQ(call("append_v2", cursor(4) + R"(, "close": false})", "two ").body(), "null");
    const rapidjson::Document refused = Json(call("append_v2", cursor(4) + "}", "twice "));
    EXPECT_TRUE(Member(refused, "error_summary").starts_with("incorrect_offset/"));
    EXPECT_EQ(Member(refused["error"], "correct_offset"), "8");
    const std::string finish = cursor(8) + R"(, "commit": {"path": "/b.txt")";
    const Answer conflict = call("finish", finish + "}}", "");
    EXPECT_NE(conflict.body().find(R"("path":{".tag":"conflict")"), std::string::npos) << conflict.body();
    EXPECT_EQ(call("finish", finish + R"(, "mode": "overwrite"}})", "").result_int(), 200u);
    EXPECT_EQ(ReadFile("b.txt"), "one two ");
    EXPECT_EQ(Tree(), unchanged);
    EXPECT_TRUE(
        Member(Json(call("finish", finish + "}}", "")), "error_summary").starts_with("lookup_failed/not_found/"));
}

/// The files of a batch are independent; a batch with invalid arguments changes nothing.
TEST_F(Transfer, FinishesSessionsInBatches) {
    const auto entry = [&](const std::string& i_start, const std::string& i_commit) {
        const std::string id = Member(Json(CallSession("start", i_start, "four")), "session_id");
        return R"({"cursor": {"session_id": ")" + id + R"(", "offset": 4}, "commit": )" + i_commit + "}";
    };
    const auto batch = [](const std::string& i_entries) { return R"({"entries": [)" + i_entries + "]}"; };
    const std::string closed = R"({"close": true})";
    const std::string good = entry(closed, R"({"path": "/New/a.txt"})");
    const std::string route = "files/upload_session/finish_batch";

    EXPECT_EQ(Rpc(route + "_v2", batch(good + R"(, {"odd": 1})")).result_int(), 400u);
    const Answer mixed = Rpc(route + "_v2", batch(entry("{}", R"({"path": "/open.txt"})") + ", " + good + ", " +
                                                  entry(closed, R"({"path": "/b.txt"})") + ", " + good));
    EXPECT_EQ(mixed.result_int(), 200u);
    const rapidjson::Document document = Json(mixed);
    const auto& results = document["entries"];
    ASSERT_EQ(results.Size(), 4u);
    EXPECT_EQ(Member(results[0], "failure"), R"({".tag":"lookup_failed","lookup_failed":{".tag":"not_closed"}})");
    EXPECT_EQ(Member(results[1], ".tag") + Member(results[1], "path_display"), "success/New/a.txt");
    EXPECT_EQ(Member(results[2], "failure"),
              R"({".tag":"path","path":{".tag":"conflict","conflict":{".tag":"file"}}})");
    EXPECT_EQ(Member(results[3], "failure"), R"({".tag":"lookup_failed","lookup_failed":{".tag":"not_found"}})");
    EXPECT_EQ(ReadFile("New/a.txt"), "four");

    // The older form answers a single entry at once, and makes the client poll for more.
    const rapidjson::Document at_once = Json(Rpc(route, batch(entry(closed, R"({"path": "/1.txt"})"))));
    EXPECT_EQ(Member(at_once, ".tag") + Member(at_once["entries"][0], "name"), "complete1.txt");
    const std::string two = entry(closed, R"({"path": "/2.txt"})") + ", " + entry(closed, R"({"path": "/3.txt"})");
    const rapidjson::Document launched = Json(Rpc(route, batch(two)));
    EXPECT_EQ(Member(launched, ".tag"), "async_job_id");
    const std::string job = R"({"async_job_id": ")" + Member(launched, "async_job_id") + R"("})";
    EXPECT_EQ(Member(Json(Rpc(route + "/check", job)), ".tag"), "in_progress");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(Json(Rpc(route + "/check", job))["entries"].Size(), 2u);
    EXPECT_TRUE(Member(Json(Rpc(route + "/check", R"({"async_job_id": "x"})")), "error_summary")
                    .starts_with("invalid_async_job_id/"));
}

/// Clients escape what is not ASCII or send UTF-8. Windows sends header text in its code page, which nobody can guess.
TEST_F(Transfer, ReadsTheArgumentHeaderAsUtf8Only) {
    const std::string name = "\xC3\xBC \xE2\x82\xAC.txt";
    WriteFile(name, "umlaut and euro");
    EXPECT_EQ(Download("/" + name).body(), "umlaut and euro");
    EXPECT_EQ(Download("/\\u00DC \\u20ac.txt").body(), "umlaut and euro");
    const char* const refused[] = {"\xFC \x80.txt", "\xE2\x82.txt", "\xC0\xAF.txt", "\\ud800.txt", "\\udc00.txt"};
    for (const std::string no_text : refused) {
        SCOPED_TRACE(no_text);
        EXPECT_EQ(Download("/" + no_text).result_int(), 400u);
        const Answer answer = Upload("{\"path\": \"/" + no_text + "\"}", "new");
        EXPECT_EQ(answer.result_int(), 400u);
        EXPECT_TRUE(std::string(answer["Content-Type"]).starts_with("text/plain"));
        EXPECT_EQ(answer.body(), "Error in call to API function \"files/upload\": HTTP header \"Dropbox-API-Arg\": "
                                 "could not decode input as JSON");
    }
    EXPECT_EQ(Tree(), std::string(unchanged) + " " + name);
}

TEST_F(Transfer, WantsTheRightContentType) {
    const std::string argument = "Dropbox-API-Arg: {\"path\": \"/b.txt\",\"mode\": \"overwrite\"}\r\n";
    ServiceClient client = Connect(content_host);
    const Answer none = client.Post("/2/files/upload", Authorization() + argument, "new");
    EXPECT_EQ(none.result_int(), 400u);
    EXPECT_NE(none.body().find("Bad HTTP \"Content-Type\" header"), std::string::npos) << none.body();
    const std::string json = "Content-Type: application/json\r\n";
    EXPECT_EQ(client.Post("/2/files/upload", Authorization() + json + argument, "new").result_int(), 400u);
    // The refused bodies were read to their end: the connection is still good for a proper upload.
    const std::string octets = "Content-Type: application/octet-stream\r\n";
    EXPECT_EQ(client.Post("/2/files/upload", Authorization() + octets + argument, "new").result_int(), 200u);
    EXPECT_EQ(ReadFile("b.txt"), "new");
}

} // namespace
