#include "RequestLog.h"

#include "Encoding.h"
#include "JsonText.h"

namespace DevService {
namespace {

std::size_t SizeOf(const RequestRecord& i_record) {
    return sizeof i_record + i_record.line.size() + i_record.head.size() + i_record.body.size();
}

void WriteRecord(JsonWriter& io_json, const RequestRecord& i_record) {
    io_json.StartObject();
    WriteMember(io_json, "host", i_record.host);
    WriteMember(io_json, "line", FromBytes(i_record.line));
    WriteMember(io_json, "head", FromBytes(i_record.head));
    WriteKey(io_json, "body_size");
    io_json.Uint64(i_record.body_size);
    WriteMember(io_json, "body_sha256", i_record.body_sha256);
    WriteMember(io_json, "body", FromBytes(i_record.body));
    WriteKey(io_json, "status");
    io_json.Uint(i_record.status);
    WriteKey(io_json, "complete");
    io_json.Bool(i_record.is_complete);
    io_json.EndObject();
}

} // namespace

void RequestLog::Add(RequestRecord i_record) {
    const std::lock_guard lock(m_mutex);
    m_total_size += SizeOf(i_record);
    m_records.push_back(std::move(i_record));
    for (; m_total_size > max_total_size; m_records.pop_front())
        m_total_size -= SizeOf(m_records.front());
}

void RequestLog::Clear() {
    const std::lock_guard lock(m_mutex);
    m_records.clear();
    m_total_size = 0;
}

std::string RequestLog::Json() const {
    rapidjson::StringBuffer buffer;
    JsonWriter json(buffer);
    const std::lock_guard lock(m_mutex);
    json.StartArray();
    for (const RequestRecord& record : m_records)
        WriteRecord(json, record);
    json.EndArray();
    return std::string(TextOf(buffer));
}

} // namespace DevService
