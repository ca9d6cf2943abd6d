#pragma once

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace DevHost {

/// Writes one JSON value: `JsonValue().Begin().Text("id", id).End().Done()`.
class JsonValue {
public:
    JsonValue& Begin();
    JsonValue& End();
    JsonValue& BeginArray();
    JsonValue& EndArray();
    JsonValue& Text(std::string_view i_name, std::wstring_view i_value);
    JsonValue& Texts(std::string_view i_name, const std::vector<std::wstring>& i_values);
    JsonValue& Number(std::string_view i_name, std::uint64_t i_value);
    JsonValue& Integer(std::string_view i_name, std::int64_t i_value);
    JsonValue& Truth(std::string_view i_name, bool i_value);
    JsonValue& Null(std::string_view i_name);

    std::string Done() const { return {m_buffer.GetString(), m_buffer.GetSize()}; }

private:
    void String(std::wstring_view i_value);
    void Name(std::string_view i_name);

    rapidjson::StringBuffer m_buffer;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_buffer};
};

} // namespace DevHost
