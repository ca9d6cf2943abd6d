#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

// A wrong access to a value is a fault of ours: it must end as one failed call, never as a dead service.
#ifndef RAPIDJSON_ASSERT
#define RAPIDJSON_ASSERT(x)                                                                                            \
    do {                                                                                                               \
        if (!(x))                                                                                                      \
            throw std::logic_error("JSON: " #x);                                                                       \
    } while (false)
#endif
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace DevService {

/// Writes JSON in ASCII, everything else as \uXXXX: the service's form, and the only one that fits into a header.
using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>>;

/// Parses UTF-8 text of any depth; false when it is not JSON.
bool ParseJson(std::string_view i_text, rapidjson::Document& o_document);

/// The text of a JSON string value.
std::string_view TextOf(const rapidjson::Value& i_string);

void WriteKey(JsonWriter& io_json, std::string_view i_name);
void WriteText(JsonWriter& io_json, std::string_view i_text);
void WriteMember(JsonWriter& io_json, std::string_view i_name, std::string_view i_text);

/// An object whose one member ".tag" is `i_tag`: the service's form of a union member without value.
void WriteTag(JsonWriter& io_json, std::string_view i_name, std::string_view i_tag);

/// What was written, as text.
std::string_view TextOf(const rapidjson::StringBuffer& i_buffer);

} // namespace DevService
