#include "ItemMetadata.h"

#include "Encoding.h"
#include "ServicePath.h"

#include <chrono>
#include <cstdio>

namespace DevService {
namespace {

std::string_view TagOf(ItemMetadata::Kind i_kind) {
    switch (i_kind) {
    case ItemMetadata::Kind::File:
        return "file";
    case ItemMetadata::Kind::Folder:
        return "folder";
    case ItemMetadata::Kind::Deleted:
        return "deleted";
    }
    return {};
}

} // namespace

void WriteMetadata(JsonWriter& io_json, const ItemMetadata& i_metadata, Tagged i_tagged) {
    io_json.StartObject();
    if (i_tagged == Tagged::Yes)
        WriteMember(io_json, ".tag", TagOf(i_metadata.kind));
    WriteMember(io_json, "name", i_metadata.name);
    WriteMember(io_json, "path_lower", ToLower(i_metadata.path));
    WriteMember(io_json, "path_display", i_metadata.path);
    if (i_metadata.kind != ItemMetadata::Kind::Deleted)
        WriteMember(io_json, "id", i_metadata.id);
    if (i_metadata.kind == ItemMetadata::Kind::File) {
        WriteMember(io_json, "client_modified", TimeText(i_metadata.client_modified));
        WriteMember(io_json, "server_modified", TimeText(i_metadata.server_modified));
        WriteMember(io_json, "rev", i_metadata.revision);
        WriteKey(io_json, "size");
        io_json.Uint64(i_metadata.size);
        WriteKey(io_json, "is_downloadable");
        io_json.Bool(IsDownloadable(i_metadata.name));
        if (!i_metadata.content_hash.empty())
            WriteMember(io_json, "content_hash", i_metadata.content_hash);
    }
    io_json.EndObject();
}

std::string MetadataJson(const ItemMetadata& i_metadata, Tagged i_tagged) {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    WriteMetadata(json, i_metadata, i_tagged);
    return std::string(TextOf(buffer));
}

std::string MetadataMembers(const ItemMetadata& i_metadata) {
    const std::string object = MetadataJson(i_metadata, Tagged::No);
    return object.substr(1, object.size() - 2);
}

std::string TimeText(std::int64_t i_seconds) {
    using namespace std::chrono;
    const sys_seconds time{seconds(i_seconds)};
    const sys_days day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    char text[64];
    const int size =
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", int{date.year()}, unsigned{date.month()},
                      unsigned{date.day()}, static_cast<int>(clock.hours().count()),
                      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text, static_cast<std::size_t>(size)};
}

std::optional<std::int64_t> ParseTime(const std::string& i_text) {
    using namespace std::chrono;
    int y = 0;
    unsigned month_number = 0, d = 0;
    int h = 0, m = 0, s = 0, length = 0;
    const int count =
        std::sscanf(i_text.c_str(), "%4d-%2u-%2uT%2d:%2d:%2dZ%n", &y, &month_number, &d, &h, &m, &s, &length);
    const year_month_day date{year(y), month(month_number), day(d)};
    const bool is_whole = count == 6 && static_cast<std::size_t>(length) == i_text.size();
    if (!is_whole || !date.ok() || h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 60)
        return std::nullopt;
    return (sys_days(date) + hours(h) + minutes(m) + seconds(s)).time_since_epoch() / seconds(1);
}

} // namespace DevService
