#include "Routes.h"

namespace DevService::ListRoutes {

namespace {

constexpr std::uint64_t max_limit = 2000;

struct Listed {
    std::string path;
    bool is_recursive;
    std::size_t limit;
};

Listed ReadListed(Arguments& io_arguments) {
    Listed listed;
    listed.path = io_arguments.Path("path", PathForm::List);
    // Clients that join paths send a double leading slash. The other calls refuse it.
    if (listed.path.starts_with("//"))
        listed.path.erase(0, 1);
    if (listed.path == "/")
        io_arguments.Refuse("path", "Specify the root folder as an empty string rather than as \"/\".");
    listed.is_recursive = io_arguments.Flag("recursive", false);
    listed.limit = static_cast<std::size_t>(io_arguments.OptionalNumber("limit", 1, max_limit).value_or(0));
    // include_media_info is obsolete, but clients still send it.
    io_arguments.Ignore({"include_media_info", "include_deleted", "include_has_explicit_shared_members",
                         "include_mounted_folders", "include_non_downloadable_files", "include_property_groups"});
    io_arguments.Finish();
    return listed;
}

} // namespace

Reply ListFolder(Call& io_call) {
    const Listed listed = ReadListed(io_call.arguments);
    return Reply::Json(io_call.account.listings.First(listed.path, listed.is_recursive, listed.limit,
                                                      io_call.service.CurrentPaging()));
}

Reply ListFolderContinue(Call& io_call) {
    const std::string cursor = io_call.arguments.Text("cursor");
    io_call.arguments.Finish();
    return Reply::Json(io_call.account.listings.Next(cursor, io_call.service.CurrentPaging()));
}

Reply GetLatestCursor(Call& io_call) {
    const Listed listed = ReadListed(io_call.arguments);
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    WriteMember(json, "cursor", io_call.account.listings.LatestCursor(listed.path, listed.is_recursive));
    json.EndObject();
    return Reply::Json(TextOf(buffer));
}

} // namespace DevService::ListRoutes
