#include "JsonText.h"

namespace DevService {

bool ParseJson(std::string_view i_text, rapidjson::Document& o_document) {
    // Iterative: the depth of what a client sends must not become the depth of our stack.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    o_document.Parse<flags>(i_text.data(), i_text.size());
    return !o_document.HasParseError();
}

std::string_view TextOf(const rapidjson::Value& i_string) {
    return {i_string.GetString(), i_string.GetStringLength()};
}

void WriteKey(JsonWriter& io_json, std::string_view i_name) {
    io_json.Key(i_name.data(), static_cast<rapidjson::SizeType>(i_name.size()));
}

void WriteText(JsonWriter& io_json, std::string_view i_text) {
    io_json.String(i_text.data(), static_cast<rapidjson::SizeType>(i_text.size()));
}

void WriteMember(JsonWriter& io_json, std::string_view i_name, std::string_view i_text) {
    WriteKey(io_json, i_name);
    WriteText(io_json, i_text);
}

void WriteTag(JsonWriter& io_json, std::string_view i_name, std::string_view i_tag) {
    WriteKey(io_json, i_name);
    io_json.StartObject();
    WriteMember(io_json, ".tag", i_tag);
    io_json.EndObject();
}

std::string_view TextOf(const rapidjson::StringBuffer& i_buffer) {
    return {i_buffer.GetString(), i_buffer.GetSize()};
}

} // namespace DevService
