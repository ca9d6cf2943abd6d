#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

// A wrong access to a value is our bug: it must fail one call, never end the service.
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

/// Writes JSON in ASCII, everything else as \uXXXX: the service's form, and the only one that fits in a header.
using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF8<>, rapidjson::ASCII<>>;

/// Parses UTF-8 text of any depth; false when it is not JSON.
bool ParseJson(std::string_view i_text, rapidjson::Document& o_document);

/// The text of a JSON string value.
std::string_view TextOf(const rapidjson::Value& i_string);

void WriteKey(JsonWriter& io_json, std::string_view i_name);
void WriteText(JsonWriter& io_json, std::string_view i_text);
void WriteMember(JsonWriter& io_json, std::string_view i_name, std::string_view i_text);

/// An object whose only member ".tag" is `i_tag`: the service's form of a union member without a value.
void WriteTag(JsonWriter& io_json, std::string_view i_name, std::string_view i_tag);

/// The written text.
std::string_view TextOf(const rapidjson::StringBuffer& i_buffer);

} // namespace DevService
