#include "Refusal.h"

#include "Encoding.h"

#include <atomic>

namespace DevService {

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
    WriteError(json);
    json.EndObject();
    return std::string(TextOf(buffer));
}

std::string RouteError::ErrorJson() const {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    WriteError(json);
    return std::string(TextOf(buffer));
}

void RouteError::WriteError(JsonWriter& io_json) const {
    if (!m_is_upload_failure)
        return WriteTags(io_json, m_tags);
    io_json.StartObject();
    WriteMember(io_json, ".tag", m_tags.front());
    WriteKey(io_json, "reason");
    WriteTags(io_json, std::span(m_tags).subspan(1));
    WriteMember(io_json, "upload_session_id", "AAAA" + RandomText(13));
    io_json.EndObject();
}

void RouteError::WriteTags(JsonWriter& io_json, std::span<const std::string> i_tags) const {
    io_json.StartObject();
    WriteMember(io_json, ".tag", i_tags.front());
    if (i_tags.size() > 1) {
        WriteKey(io_json, i_tags.front());
        WriteTags(io_json, i_tags.subspan(1));
    } else {
        for (const auto& [name, value] : m_members) {
            WriteKey(io_json, name);
            io_json.RawValue(value.data(), value.size(), rapidjson::kNumberType);
        }
    }
    io_json.EndObject();
}

} // namespace DevService
