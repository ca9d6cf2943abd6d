#include "Hosts.h"
#include "Routes.h"

#include <algorithm>
#include <filesystem>

namespace DevService::UserRoutes {

namespace {

void WriteName(JsonWriter& io_json, std::string_view i_name) {
    const std::size_t gap = std::min(i_name.find(' '), i_name.size());
    const std::string_view given = i_name.substr(0, gap);
    const std::string_view family = i_name.substr(std::min(gap + 1, i_name.size()));
    WriteKey(io_json, "name");
    io_json.StartObject();
    WriteMember(io_json, "given_name", given);
    WriteMember(io_json, "surname", family);
    WriteMember(io_json, "familiar_name", given);
    WriteMember(io_json, "display_name", i_name);
    WriteMember(io_json, "abbreviated_name", std::string(given.substr(0, 1)) + std::string(family.substr(0, 1)));
    io_json.EndObject();
}

void WriteFlag(JsonWriter& io_json, std::string_view i_name, bool i_value) {
    WriteKey(io_json, i_name);
    io_json.Bool(i_value);
}

} // namespace

Reply GetCurrentAccount(Call& io_call) {
    const Account& account = io_call.account;
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    WriteMember(json, "account_id", account.id);
    WriteName(json, account.name);
    WriteMember(json, "email", account.email);
    WriteFlag(json, "email_verified", true);
    WriteFlag(json, "disabled", false);
    WriteMember(json, "country", "US");
    WriteMember(json, "locale", "en");
    WriteMember(json, "referral_link", "https://" + std::string(web_host) + "/referrals/");
    WriteFlag(json, "is_paired", false);
    WriteTag(json, "account_type", "basic");
    WriteKey(json, "root_info");
    json.StartObject();
    WriteMember(json, ".tag", "user");
    WriteMember(json, "root_namespace_id", "1");
    WriteMember(json, "home_namespace_id", "1");
    json.EndObject();
    json.EndObject();
    return Reply::Json(TextOf(buffer));
}

Reply GetSpaceUsage(Call& io_call) {
    const std::filesystem::space_info space = std::filesystem::space(io_call.account.storage.Root());
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    WriteKey(json, "used");
    json.Uint64(space.capacity - space.free);
    WriteKey(json, "allocation");
    json.StartObject();
    WriteMember(json, ".tag", "individual");
    WriteKey(json, "allocated");
    json.Uint64(space.capacity);
    json.EndObject();
    json.EndObject();
    return Reply::Json(TextOf(buffer));
}

Reply CheckUser(Call& io_call) {
    const std::string query = io_call.arguments.OptionalText("query").value_or("");
    io_call.arguments.Finish();
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    WriteMember(json, "result", query);
    json.EndObject();
    return Reply::Json(TextOf(buffer));
}

Reply RevokeToken(Call& io_call) {
    io_call.service.accounts.Revoke(io_call.token);
    return Reply::Json("null");
}

} // namespace DevService::UserRoutes
