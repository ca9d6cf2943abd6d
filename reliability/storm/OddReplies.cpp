#include "OddReplies.h"

#include <array>
#include <string_view>

namespace Storm {

namespace {

using namespace std::string_literals;

std::string RandomBytes(Dice& io_dice, std::size_t i_size) {
    std::string bytes(i_size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(io_dice.Below(256));
    return bytes;
}

std::string Repeated(std::string_view i_text, std::size_t i_count) {
    std::string text;
    for (std::size_t i = 0; i < i_count; ++i)
        text += i_text;
    return text;
}

/// None of them is what a call expects, and none says that the call was carried out.
const std::array<std::string, 22> odd_texts = {
    ""s,
    "null"s,
    "true"s,
    "0"s,
    "-1e400"s,
    "\"text\""s,
    "[]"s,
    "{}"s,
    "{"s,
    "{\"entries\":{},\"has_more\":false}"s,
    "{\"entries\":[7,null,[]],\"has_more\":false}"s,
    "{\"entries\":[],\"has_more\":\"no\"}"s,
    "{\".tag\":7,\"name\":[],\"path_display\":{}}"s,
    "{\".tag\":\"file\",\"name\":\"a.txt\",\"size\":\"12\"}"s,
    "{\".tag\":\"file\",\"path_display\":\"\\ud800\",\"name\":\"\\udc00\",\"size\":-1}"s,
    "{\".tag\":\"file\",\"size\":99999999999999999999999999,\"path_display\":\"/x\",\"name\":\"x\"}"s,
    "{\"error_summary\":5,\"error\":[]}"s,
    "{\"error_summary\":\"\",\"error\":{\".tag\":{}}}"s,
    "{\"error_summary\":\"other/...\",\"error\":{\".tag\":\"other\"},\"error\":{\".tag\":\"path\"}}"s,
    "{\"error_summary\":\"line one\\r\\nline two \\u0000 \\u202e end\"}"s,
    "<html><head><title>Sign in</title></head><body>Welcome to the network</body></html>"s,
    "\xEF\xBB\xBF{\"account_id\": 7}"s,
};

} // namespace

std::string OddBody(Dice& io_dice) {
    switch (io_dice.Below(6)) {
    case 0:
        return RandomBytes(io_dice, io_dice.Below(3000));
    case 1:
        return Repeated(io_dice.Pick({"[", "{\"a\":", "[[],"}), 1 + io_dice.Below(20'000));
    default:
        return io_dice.Pick(std::span<const std::string>(odd_texts));
    }
}

WireReply OddRefusal(Dice& io_dice) {
    WireReply reply;
    reply.status = io_dice.Pick({400U, 403U, 405U, 406U, 407U, 408U, 410U, 411U, 413U, 415U, 418U, 422U,
                                 429U, 451U, 500U, 501U, 502U, 503U, 504U, 505U, 507U, 511U, 599U});
    reply.headers.emplace_back("Content-Type", io_dice.Pick({"application/json", "text/html", "text/plain", ""}));
    reply.body = OddBody(io_dice);
    return reply;
}

WireReply Garbage(Dice& io_dice) {
    return {200, {{"Content-Type", io_dice.Pick({"application/json", "text/plain"})}}, OddBody(io_dice), false};
}

WireReply PortalPage(Dice& io_dice) {
    WireReply page{200, {{"Content-Type", "text/html"}}, {}, false};
    if (!io_dice.OneIn(3))
        page.body = "<html><body>" + Repeated("Sign in to the network. ", 1 + io_dice.Below(100)) + "</body></html>";
    return page;
}

WireReply NearlyMissing(Dice& io_dice) {
    if (io_dice.OneIn(2))
        return {404, {{"Content-Type", "text/html"}}, "<html><body>404 Not Found</body></html>", false};
    const std::string tag = io_dice.Pick({"path/elsewhere/.", "not_found/", "path/restricted/", "", "path/"});
    return {409, {{"Content-Type", "application/json"}}, R"({"error_summary":")" + tag + R"(","error":{}})", false};
}

WireReply Unauthorized() {
    return {401,
            {{"Content-Type", "application/json"}},
            R"({"error_summary":"expired_access_token/","error":{".tag":"expired_access_token"}})",
            false};
}

WireReply ManyWords(Dice& io_dice) {
    const std::string words = Repeated("one more word, ", 100 + io_dice.Below(20'000));
    if (io_dice.OneIn(2))
        return {500, {{"Content-Type", "text/plain"}}, words, false};
    return {409, {{"Content-Type", "application/json"}}, R"({"error_summary":"other/)" + words + R"("})", false};
}

} // namespace Storm
