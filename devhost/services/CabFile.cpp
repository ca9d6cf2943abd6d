#include "services/CabFile.h"

#include "base/Failure.h"
#include "base/LocalFile.h"
#include "base/Unicode.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace DevHost {
namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

std::string_view TextOf(const rapidjson::Value& i_json) {
    return {i_json.GetString(), i_json.GetStringLength()};
}

void Write(Writer& io_writer, std::wstring_view i_text) {
    const std::string text = ToUtf8(i_text);
    io_writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void Write(Writer& io_writer, const CabNode& i_node) {
    const CabNode::Value& value = i_node.GetValue();
    if (const auto* members = std::get_if<CabNode::Dictionary>(&value)) {
        io_writer.StartObject();
        for (const auto& [id, member] : *members) {
            Write(io_writer, id);
            Write(io_writer, *member);
        }
        io_writer.EndObject();
    } else if (const auto* elements = std::get_if<CabNode::Array>(&value)) {
        io_writer.StartArray();
        for (const CabNode::Node& element : *elements)
            Write(io_writer, *element);
        io_writer.EndArray();
    } else if (const auto* number = std::get_if<LONG>(&value)) {
        io_writer.Int(static_cast<int>(*number));
    } else if (const auto* text = std::get_if<std::wstring>(&value)) {
        Write(io_writer, *text);
    } else {
        io_writer.Null();
    }
}

/// Throws a text for a value that no settings file holds.
CabNode::Node Read(const rapidjson::Value& i_json) {
    const CabNode::Node node = Qorv::Create<CabNode>();
    if (node == nullptr)
        throw std::bad_alloc();
    if (i_json.IsObject()) {
        CabNode::Dictionary members;
        for (const auto& member : i_json.GetObject())
            members.emplace_back(FromUtf8(TextOf(member.name)), Read(member.value));
        node->SetValue(std::move(members));
    } else if (i_json.IsArray()) {
        CabNode::Array elements;
        for (const auto& element : i_json.GetArray())
            elements.push_back(Read(element));
        node->SetValue(std::move(elements));
    } else if (i_json.IsInt()) {
        node->SetValue(LONG{i_json.GetInt()});
    } else if (i_json.IsString()) {
        node->SetValue(FromUtf8(TextOf(i_json)));
    } else if (i_json.IsNull()) {
        node->SetValue(std::monostate());
    } else {
        throw Failure(E_FAIL, L"it holds a value of an unknown type");
    }
    return node;
}

CabNode::Node Parse(const std::string& i_bytes) {
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::Document document;
    document.Parse<flags>(i_bytes.data(), i_bytes.size());
    if (document.HasParseError())
        throw Failure(E_FAIL, FromUtf8(rapidjson::GetParseError_En(document.GetParseError())));
    if (!document.IsObject())
        throw Failure(E_FAIL, L"it doesn't hold a dictionary");
    return Read(document);
}

/// Moves a file out of the way, to an unused name.
std::filesystem::path SetAside(const std::filesystem::path& i_path) {
    std::filesystem::path aside;
    for (int number = 1; aside.empty() || std::filesystem::exists(aside); ++number) {
        aside = i_path;
        aside += L".damaged-" + std::to_wstring(number);
    }
    MoveLocalFile(i_path, aside);
    return aside;
}

} // namespace

bool CabFile::Exists() const {
    std::error_code ignored;
    return std::filesystem::exists(m_path, ignored);
}

CabNode::Node CabFile::Load() const {
    if (!Exists())
        return Qorv::Create<CabNode>();
    const std::string bytes = ReadWholeFile(m_path);
    try {
        return Parse(bytes);
    } catch (const Failure& damage) {
        const std::filesystem::path aside = SetAside(m_path);
        throw Failure(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), L"The settings file " + m_path.wstring() +
                                                                  L" is damaged (" + damage.Text() +
                                                                  L"). It was set aside as " + aside.wstring());
    }
}

void CabFile::Save(const CabNode& i_dictionary) const {
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    Write(writer, i_dictionary);
    WriteFileAtomically(m_path, {buffer.GetString(), buffer.GetSize()});
}

void CabFile::Remove() const {
    if (!DeleteFileW(m_path.c_str()))
        throw LastErrorFailure(L"Cannot remove " + m_path.wstring());
}

} // namespace DevHost
