#include "LocalService.h"

#include <chrono>

using namespace DevService;

namespace {

class ControlInterface : public LocalService {};

TEST_F(ControlInterface, RecordsRequestsByteForByte) {
    const std::string head = "POST /2/files/download HTTP/1.1\r\nhOST:  odd\r\nX-Twice: 1\r\n" + Authorization() +
                             "x-twice:2\t \r\nDropbox-API-Arg: {\"path\": \"/\xFC.txt\"}\r\ncontent-length:0\r\n\r\n";
    ServiceClient client = Connect(content_host);
    client.Send(head);
    EXPECT_EQ(client.Receive().result_int(), 400u);
    Upload(R"({"path": "/n.bin"})", std::string("\0\x80\xFF\n", 4));

    const rapidjson::Document requests = Requests();
    ASSERT_EQ(requests.Size(), 2u);
    EXPECT_EQ(Member(requests[0], "host"), "content.dropboxapi.com");
    EXPECT_EQ(Member(requests[0], "line"), "POST /2/files/download HTTP/1.1");
    std::string expected = head;
    expected.replace(expected.find('\xFC'), 1, "\xC3\xBC"); // each byte as the character of its value
    EXPECT_EQ(Member(requests[0], "head"), expected);
    EXPECT_EQ(Member(requests[0], "status"), "400");
    EXPECT_EQ(Member(requests[1], "body_size"), "4");
    EXPECT_EQ(Member(requests[1], "body"), std::string("\0\xC2\x80\xC3\xBF\n", 6));
    EXPECT_EQ(Member(requests[1], "body_sha256"), "86c4664401a31696fce9f0ca20294f03cf9ce41664c19b5265cb23157ea02468");
    EXPECT_EQ(Member(requests[1], "complete"), "true");
    Control("DELETE", "requests");
    EXPECT_EQ(Requests().Size(), 0u);
}

TEST_F(ControlInterface, MakesUpReplies) {
    Control("POST", "faults",
            R"({"path": "2/files/get_metadata", "skip": 1, "times": 2, "status": 399, "reason": "Odd",
                "headers": [["WWW-Authenticate", "OAuth one"], ["WWW-Authenticate", "Basic"]], "body": "made"})");
    std::string statuses;
    for (int i = 0; i < 4; ++i) {
        const Answer answer = Rpc("files/get_metadata", R"({"path": "/b.txt"})");
        statuses += std::to_string(answer.result_int()) + " ";
        if (answer.result_int() != 399)
            continue;
        EXPECT_EQ(answer.reason(), "Odd");
        EXPECT_EQ(answer.body(), "made");
        EXPECT_EQ(answer.count("WWW-Authenticate"), 2);
    }
    EXPECT_EQ(statuses, "200 399 399 200 ");

    Control("POST", "faults",
            R"({"path": "2/files/delete", "rate_limit": "too_many_write_operations", "retry_after": 15})");
    const Answer limited = Rpc("files/delete", R"({"path": "/b.txt"})");
    EXPECT_EQ(limited.result_int(), 429u);
    EXPECT_EQ(std::string(limited["Retry-After"]) + std::string(limited["Content-Type"]), "15application/json");
    EXPECT_EQ(Member(Json(limited), "error"), R"({"reason":{".tag":"too_many_write_operations"},"retry_after":15})");

    // With a made-up reply the call is not executed; a real one only looks different.
    Control("POST", "faults", R"({"path": "2/files/delete", "status": 500})");
    EXPECT_EQ(Rpc("files/delete", R"({"path": "/b.txt"})").result_int(), 500u);
    EXPECT_EQ(ReadFile("b.txt"), "beta");
    Control("POST", "faults", R"({"path": "2/files/delete", "status": 500, "real": true})");
    const Answer answer = Rpc("files/delete", R"({"path": "/b.txt"})");
    EXPECT_EQ(answer.result_int(), 500u);
    EXPECT_NE(answer.body().find("\"name\":\"b.txt\""), std::string::npos);
    EXPECT_EQ(Tree(), "Docs/ Docs/Sub/ Docs/Sub/deep.txt Docs/a.txt");
}

TEST_F(ControlInterface, SpoilsTheTransferOfReplies) {
    ServiceClient client = Connect(content_host);
    const auto ask = [&] {
        client.Send("POST /2/files/download HTTP/1.1\r\n" + Authorization() +
                    "Dropbox-API-Arg: {\"path\": \"/b.txt\"}\r\ncontent-length:0\r\n\r\n");
    };
    Control("POST", "faults", R"({"path": "2/files/download", "chunked": true, "piece": 3, "slow_body_ms": 1})");
    ask();
    const Answer chunked = client.Receive();
    EXPECT_EQ(chunked.body(), "beta");
    EXPECT_TRUE(chunked.chunked());

    Control("POST", "faults", R"({"path": "2/files/download", "delay_ms": 50})");
    const auto start = std::chrono::steady_clock::now();
    ask();
    EXPECT_EQ(client.Receive().body(), "beta");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));

    Control("POST", "faults", R"({"path": "2/files/download", "truncate_body": 3})");
    ask();
    boost::system::error_code error;
    const Answer truncated = client.Receive(error);
    EXPECT_TRUE(error);
    EXPECT_EQ(truncated.body(), "bet");
    EXPECT_EQ(std::string(truncated["Content-Length"]), "4");
}

TEST_F(ControlInterface, ChunksEverySecondReplyOfTheApi) {
    for (int i = 0; i < 200; ++i)
        WriteFile(std::to_string(i) + std::string(100, 'n'), "");
    std::string forms;
    for (int i = 0; i < 4; ++i) {
        const Answer answer = Rpc("files/list_folder", R"({"path": ""})"); // more than one chunk
        EXPECT_EQ(Json(answer)["entries"].Size(), 202u);
        forms += answer.chunked() ? "chunked " : answer.count("Content-Length") == 1 ? "length " : "neither ";
        EXPECT_FALSE(Download("/b.txt").chunked());
    }
    EXPECT_EQ(forms, "length chunked length chunked ");
    Control("POST", "faults", R"({"path": "2/files/delete", "times": 2, "real": true})");
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(Rpc("files/delete", R"({"path": "/nope"})").chunked());
}

TEST_F(ControlInterface, DropsUploadsWithTheBeginningOfAReply) {
    Control("POST", "faults", R"({"path": "2/files/upload", "drop_request_after": 100000})");
    ServiceClient client = Connect(content_host);
    const std::string head = "POST /2/files/upload HTTP/1.1\r\n" + Authorization() +
                             "Content-Type: application/octet-stream\r\n"
                             "Dropbox-API-Arg: {\"path\": \"/b.txt\",\"mode\": \"overwrite\"}\r\n"
                             "content-length:200000\r\n\r\n";
    client.Send(head + std::string(100'000, 'n'));
    boost::system::error_code error;
    client.Receive(error);
    EXPECT_TRUE(error);
    const rapidjson::Document requests = Requests();
    EXPECT_EQ(Member(requests[0], "body_size"), "100000");
    EXPECT_EQ(Member(requests[0], "complete"), "false");
    EXPECT_EQ(ReadFile("b.txt"), "beta");
}

TEST_F(ControlInterface, RefusesWhatItCannotRead) {
    const auto post = [&](const std::string& i_body) {
        return ExchangeClear(m_server->Port(), "POST /control/faults HTTP/1.1\r\nContent-Length: " +
                                                   std::to_string(i_body.size()) + "\r\n\r\n" + i_body);
    };
    for (const char* fault : {R"({"path": "2/", "status": 99})", R"({"status": 500})",
                              R"({"path": "2/", "statsu": 500})", R"({"path": "2/", "headers": ["x"]})", "no json"})
        EXPECT_TRUE(post(fault).starts_with("HTTP/1.1 400 ")) << fault;
    EXPECT_TRUE(ExchangeClear(m_server->Port(), "GET / HTTP/1.1\r\n\r\n").starts_with("HTTP/1.1 404 "));
}

} // namespace
