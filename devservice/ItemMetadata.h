#pragma once

#include "JsonText.h"

#include <cstdint>
#include <optional>
#include <string>

namespace DevService {

/// What the service reports about one file or folder.
struct ItemMetadata {
    enum class Kind { File, Folder, Deleted };

    Kind kind = Kind::File;
    std::string name;
    std::string path; ///< as displayed; its lower-case form identifies the item
    std::string id;

    // Of files only:
    std::uint64_t size = 0;
    std::int64_t client_modified = 0; ///< seconds since 1970, UTC
    std::int64_t server_modified = 0;
    std::string revision;
    std::string content_hash; ///< empty: not reported

    bool IsFolder() const { return kind == Kind::Folder; }
};

/// Whether the object names its kind in a ".tag", as it does wherever a reply could have either kind.
enum class Tagged { No, Yes };

void WriteMetadata(JsonWriter& io_json, const ItemMetadata& i_metadata, Tagged i_tagged);
std::string MetadataJson(const ItemMetadata& i_metadata, Tagged i_tagged);

/// The object's members without braces, to be combined with others.
std::string MetadataMembers(const ItemMetadata& i_metadata);

/// "2015-05-12T15:50:38Z"
std::string TimeText(std::int64_t i_seconds);

/// Such a text in seconds since 1970; empty if it isn't one.
std::optional<std::int64_t> ParseTime(const std::string& i_text);

} // namespace DevService
