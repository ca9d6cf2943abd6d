#include "Refusal.h"

#include <atomic>
#include <span>

#include "JsonText.h"
#include "Text.h"

namespace DevService {

namespace {

void WriteTags(JsonWriter& io_json, std::span<const std::string> i_tags) {
    io_json.StartObject();
    WriteMember(io_json, ".tag", i_tags.front());
    if (i_tags.size() > 1) {
        WriteKey(io_json, i_tags.front());
        WriteTags(io_json, i_tags.subspan(1));
    }
    io_json.EndObject();
}

} // namespace

RouteError::RouteError(std::vector<std::string> i_tags) : m_tags(std::move(i_tags)) {
    static std::atomic<unsigned> count{0};
    for (const std::string& tag : m_tags)
        m_summary += tag + '/';
    m_summary.append(count++ % 4, '.');
}

RouteError& RouteError::With(std::string i_name, std::string i_json) {
    m_members.emplace_back(std::move(i_name), std::move(i_json));
    return *this;
}

RouteError& RouteError::AsUploadFailure() {
    m_is_upload_failure = m_tags.size() > 1;
    return *this;
}

std::string RouteError::Json() const {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    json.StartObject();
    WriteMember(json, "error_summary", Summary());
    WriteKey(json, "error");
    const std::span<const std::string> tags = m_tags;
    json.StartObject();
    WriteMember(json, ".tag", tags.front());
    if (m_is_upload_failure) {
        WriteKey(json, "reason");
        WriteTags(json, tags.subspan(1));
        WriteMember(json, "upload_session_id", "AAAA" + RandomText(13));
    } else if (tags.size() > 1) {
        WriteKey(json, tags.front());
        WriteTags(json, tags.subspan(1));
    }
    for (const auto& [name, value] : m_members) {
        WriteKey(json, name);
        json.RawValue(value.data(), value.size(), rapidjson::kNumberType);
    }
    json.EndObject();
    json.EndObject();
    return std::string(TextOf(buffer));
}

} // namespace DevService
