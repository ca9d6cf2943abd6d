#include "Arguments.h"

#include "Encoding.h"
#include "Refusal.h"

#include <algorithm>
#include <cctype>

namespace DevService {
namespace {

std::string_view TypeName(const rapidjson::Value& i_value) {
    switch (i_value.GetType()) {
    case rapidjson::kNullType:
        return "null";
    case rapidjson::kFalseType:
    case rapidjson::kTrueType:
        return "boolean";
    case rapidjson::kObjectType:
        return "object";
    case rapidjson::kArrayType:
        return "list";
    case rapidjson::kStringType:
        return "string";
    case rapidjson::kNumberType:
        return i_value.IsDouble() ? "float" : "integer";
    }
    return "value";
}

/// What the service prints if a path doesn't have the form.
std::string_view Pattern(PathForm i_form) {
    switch (i_form) {
    case PathForm::Read:
        return R"((/(.|[\r\n])*|id:.*)|(rev:[0-9a-f]{9,})|(ns:[0-9]+(/(.|[\r\n])*)?))";
    case PathForm::List:
        return R"((/(.|[\r\n])*)?|id:.*|(ns:[0-9]+(/(.|[\r\n])*)?))";
    case PathForm::WriteOrId:
        return R"((/(.|[\r\n])*)|(ns:[0-9]+(/(.|[\r\n])*)?)|(id:.*))";
    case PathForm::Write:
        return R"((/(.|[\r\n])*)|(ns:[0-9]+(/(.|[\r\n])*)?))";
    }
    return {};
}

bool IsRevision(std::string_view i_text) {
    constexpr std::size_t smallest_size = 9;
    return i_text.size() >= smallest_size && i_text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

bool IsNamespace(std::string_view i_text) {
    const std::string_view number = i_text.substr(0, i_text.find('/'));
    return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

bool Matches(std::string_view i_path, PathForm i_form) {
    if (i_path.empty())
        return i_form == PathForm::List;
    if (i_path.starts_with("id:"))
        return i_form != PathForm::Write;
    if (i_path.starts_with("rev:"))
        return i_form == PathForm::Read && IsRevision(i_path.substr(4));
    if (i_path.starts_with("ns:"))
        return IsNamespace(i_path.substr(3));
    return i_path.front() == '/';
}

} // namespace

Arguments::Arguments(std::string_view i_text, std::string_view i_where) : m_where(i_where) {
    if (!ParseJson(i_text, m_value))
        Refuse("could not decode input as JSON");
    CheckIsObject();
}

Arguments::Arguments(const rapidjson::Value& i_value, std::string i_where) : m_where(std::move(i_where)) {
    m_value.CopyFrom(i_value, m_value.GetAllocator());
    CheckIsObject();
}

void Arguments::CheckIsObject() const {
    if (!m_value.IsObject())
        Refuse("expected object, got " + std::string(TypeName(m_value)));
}

std::string Arguments::Text(std::string_view i_name) {
    const rapidjson::Value& value = RequiredMember(i_name);
    if (!value.IsString())
        RefuseType(i_name, "string", value);
    if (!IsUtf8(TextOf(value))) // a lone surrogate, which the parser accepts
        Refuse("could not decode input as JSON");
    return std::string(TextOf(value));
}

std::optional<std::string> Arguments::OptionalText(std::string_view i_name) {
    if (!Member(i_name))
        return std::nullopt;
    return Text(i_name);
}

std::string Arguments::Path(std::string_view i_name, PathForm i_form) {
    std::string path = Text(i_name);
    if (!Matches(path, i_form))
        Refuse(i_name, "'" + path + "' did not match pattern '" + std::string(Pattern(i_form)) + "'");
    return path;
}

bool Arguments::Flag(std::string_view i_name, bool i_default) {
    const rapidjson::Value* value = Member(i_name);
    if (!value)
        return i_default;
    if (!value->IsBool())
        RefuseType(i_name, "boolean", *value);
    return value->GetBool();
}

std::optional<std::uint64_t> Arguments::OptionalNumber(std::string_view i_name, std::uint64_t i_min,
                                                       std::uint64_t i_max) {
    const rapidjson::Value* value = Member(i_name);
    if (!value)
        return std::nullopt;
    if (!value->IsInt64() && !value->IsUint64())
        RefuseType(i_name, "integer", *value);
    if (!value->IsUint64() || value->GetUint64() < i_min || value->GetUint64() > i_max)
        Refuse(i_name, "not within range [" + std::to_string(i_min) + ", " + std::to_string(i_max) + "]");
    return value->GetUint64();
}

Arguments::Choice Arguments::OneOf(std::string_view i_name, std::string_view i_default,
                                   std::initializer_list<std::string_view> i_tags) {
    const rapidjson::Value* value = Member(i_name);
    if (!value)
        return {std::string(i_default), {}};
    Choice choice;
    if (value->IsString()) {
        choice.tag = TextOf(*value);
    } else if (value->IsObject()) {
        const auto tag = value->FindMember(".tag");
        if (tag == value->MemberEnd() || !tag->value.IsString())
            Refuse(i_name, "missing '.tag' key");
        choice.tag = TextOf(tag->value);
        const auto content = value->FindMember(choice.tag.c_str());
        if (content != value->MemberEnd() && content->value.IsString())
            choice.value = TextOf(content->value);
    } else {
        RefuseType(i_name, "union", *value);
    }
    if (std::ranges::find(i_tags, choice.tag) == i_tags.end())
        Refuse(i_name, "invalid value '" + choice.tag + "'");
    return choice;
}

Arguments Arguments::Object(std::string_view i_name) {
    return Arguments(RequiredMember(i_name), m_where + ": " + std::string(i_name));
}

std::vector<Arguments> Arguments::Objects(std::string_view i_name, std::size_t i_max_count) {
    const rapidjson::Value& value = RequiredMember(i_name);
    if (!value.IsArray())
        RefuseType(i_name, "list", value);
    if (value.Size() > i_max_count)
        Refuse(i_name, "has more than " + std::to_string(i_max_count) + " items");
    std::vector<Arguments> objects;
    for (const rapidjson::Value& object : value.GetArray())
        objects.push_back(Arguments(object, m_where + ": " + std::string(i_name)));
    return objects;
}

void Arguments::Ignore(std::initializer_list<std::string_view> i_names) {
    m_known.insert(m_known.end(), i_names.begin(), i_names.end());
}

void Arguments::Finish() const {
    for (const auto& member : m_value.GetObject())
        if (std::ranges::find(m_known, TextOf(member.name)) == m_known.end())
            Refuse("unknown field '" + std::string(TextOf(member.name)) + "'");
}

void Arguments::Refuse(std::string_view i_text) const {
    throw BadArguments(m_where + ": " + std::string(i_text));
}

void Arguments::Refuse(std::string_view i_name, std::string_view i_text) const {
    Refuse(std::string(i_name) + ": " + std::string(i_text));
}

void Arguments::RefuseType(std::string_view i_name, std::string_view i_wanted, const rapidjson::Value& i_got) const {
    Refuse(i_name, "expected " + std::string(i_wanted) + ", got " + std::string(TypeName(i_got)));
}

const rapidjson::Value* Arguments::Member(std::string_view i_name) {
    m_known.emplace_back(i_name);
    const rapidjson::Value name(rapidjson::StringRef(i_name.data(), i_name.size()));
    const rapidjson::Value& arguments = m_value;
    const auto member = arguments.FindMember(name);
    return member == arguments.MemberEnd() || member->value.IsNull() ? nullptr : &member->value;
}

const rapidjson::Value& Arguments::RequiredMember(std::string_view i_name) {
    if (const rapidjson::Value* value = Member(i_name))
        return *value;
    Refuse("missing required field '" + std::string(i_name) + "'");
}

} // namespace DevService
