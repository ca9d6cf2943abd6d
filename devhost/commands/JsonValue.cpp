#include "commands/JsonValue.h"

#include "base/Unicode.h"

namespace DevHost {

JsonValue& JsonValue::Begin() {
    m_writer.StartObject();
    return *this;
}

JsonValue& JsonValue::End() {
    m_writer.EndObject();
    return *this;
}

JsonValue& JsonValue::BeginArray() {
    m_writer.StartArray();
    return *this;
}

JsonValue& JsonValue::EndArray() {
    m_writer.EndArray();
    return *this;
}

JsonValue& JsonValue::Text(std::string_view i_name, std::wstring_view i_value) {
    Name(i_name);
    String(i_value);
    return *this;
}

JsonValue& JsonValue::Texts(std::string_view i_name, const std::vector<std::wstring>& i_values) {
    Name(i_name);
    m_writer.StartArray();
    for (const std::wstring& value : i_values)
        String(value);
    m_writer.EndArray();
    return *this;
}

JsonValue& JsonValue::Number(std::string_view i_name, std::uint64_t i_value) {
    Name(i_name);
    m_writer.Uint64(i_value);
    return *this;
}

JsonValue& JsonValue::Integer(std::string_view i_name, std::int64_t i_value) {
    Name(i_name);
    m_writer.Int64(i_value);
    return *this;
}

JsonValue& JsonValue::Truth(std::string_view i_name, bool i_value) {
    Name(i_name);
    m_writer.Bool(i_value);
    return *this;
}

JsonValue& JsonValue::Null(std::string_view i_name) {
    Name(i_name);
    m_writer.Null();
    return *this;
}

void JsonValue::String(std::wstring_view i_value) {
    const std::string value = ToUtf8(i_value);
    m_writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
}

void JsonValue::Name(std::string_view i_name) {
    m_writer.Key(i_name.data(), static_cast<rapidjson::SizeType>(i_name.size()));
}

} // namespace DevHost
