#pragma once

#include "JsonText.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace DevService {

/// The form that the service requires of a path argument.
enum class PathForm {
    Read,      ///< a path, an id or a revision
    List,      ///< a path that may be empty, or an id
    WriteOrId, ///< a path or an id
    Write      ///< a path
};

/// The arguments of one call. The service is strict: every getter refuses a value of another type, and `Finish` refuses
/// fields that were never read. All throw BadArguments.
class Arguments {
public:
    /// @param i_text JSON in UTF-8
    /// @param i_where how messages name the source: "request body" or the header
    Arguments(std::string_view i_text, std::string_view i_where);

    std::string Text(std::string_view i_name);
    std::optional<std::string> OptionalText(std::string_view i_name);

    /// The text of a path argument, after checking its form; see ServicePath for its content.
    std::string Path(std::string_view i_name, PathForm i_form);

    bool Flag(std::string_view i_name, bool i_default);
    std::optional<std::uint64_t> OptionalNumber(std::string_view i_name, std::uint64_t i_min, std::uint64_t i_max);

    /// A union: its tag, and its value as text when it has one. The compact form, a plain string, is accepted too.
    struct Choice {
        std::string tag;
        std::string value;
    };
    Choice OneOf(std::string_view i_name, std::string_view i_default, std::initializer_list<std::string_view> i_tags);

    /// The member unchanged; null if it is missing or null.
    const rapidjson::Value* Member(std::string_view i_name);

    /// The arguments in a nested object.
    Arguments Object(std::string_view i_name);

    /// The arguments in each object of an array.
    std::vector<Arguments> Objects(std::string_view i_name, std::size_t i_max_count);

    /// Fields that are accepted and have no effect.
    void Ignore(std::initializer_list<std::string_view> i_names);

    void Finish() const;

    [[noreturn]] void Refuse(std::string_view i_text) const;
    [[noreturn]] void Refuse(std::string_view i_name, std::string_view i_text) const;

private:
    Arguments(const rapidjson::Value& i_value, std::string i_where);
    void CheckIsObject() const;

    const rapidjson::Value& RequiredMember(std::string_view i_name);
    [[noreturn]] void RefuseType(std::string_view i_name, std::string_view i_wanted,
                                 const rapidjson::Value& i_got) const;

    rapidjson::Document m_value;
    std::string m_where;
    std::vector<std::string> m_known;
};

} // namespace DevService
