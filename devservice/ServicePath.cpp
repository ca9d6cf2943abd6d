#include "ServicePath.h"

#include "Encoding.h"
#include "Refusal.h"

#include <algorithm>
#include <array>

namespace DevService {
namespace {

constexpr std::size_t max_name_length = 255;
constexpr std::size_t max_name_count = 300;

/// Longest name, in bytes, that the usual file systems can store.
constexpr std::size_t max_name_bytes = 255;

bool IsGoodName(std::string_view i_name) {
    return !i_name.empty() && i_name != "." && i_name != ".." && i_name.size() <= max_name_bytes &&
           Utf16Length(i_name) <= max_name_length && i_name.find_first_of(std::string_view("\\\0", 2)) == i_name.npos;
}

} // namespace

ServicePath ServicePath::Parse(std::string_view i_text, std::string_view i_member) {
    const RouteError malformed({std::string(i_member), "malformed_path"});
    ServicePath path;
    if (i_text.empty())
        return path;
    constexpr std::string_view blanks = " \t\r\n";
    if (i_text.front() != '/' || blanks.find(i_text.back()) != blanks.npos)
        throw malformed;
    const std::string text = Composed(i_text);
    for (std::string_view rest = text; !rest.empty();) {
        rest.remove_prefix(1);
        const std::string_view name = rest.substr(0, rest.find('/'));
        if (!IsGoodName(name) || path.names.size() == max_name_count)
            throw malformed;
        path.names.emplace_back(name);
        rest.remove_prefix(name.size());
    }
    return path;
}

std::string ServicePath::Text() const {
    std::string text;
    for (const std::string& name : names)
        text += '/' + name;
    return text;
}

ServicePath ServicePath::Parent() const {
    ServicePath parent = *this;
    if (!parent.names.empty())
        parent.names.pop_back();
    return parent;
}

ServicePath ServicePath::WithName(std::string i_name) const {
    ServicePath path = Parent();
    path.names.push_back(std::move(i_name));
    return path;
}

bool ServicePath::IsWithin(const ServicePath& i_folder) const {
    return names.size() >= i_folder.names.size() &&
           std::equal(i_folder.names.begin(), i_folder.names.end(), names.begin(),
                      [](const std::string& i_a, const std::string& i_b) { return ToLower(i_a) == ToLower(i_b); });
}

bool IsDisallowedName(std::string_view i_name) {
    static constexpr std::array<std::string_view, 6> names = {"desktop.ini", "thumbs.db", ".ds_store",
                                                              "icon\r",      ".dropbox",  ".dropbox.attr"};
    const std::string name = ToLower(i_name);
    return std::ranges::find(names, name) != names.end() || name.starts_with("~$") || name.starts_with(".~") ||
           (name.starts_with("~") && name.ends_with(".tmp")) || name.starts_with(hidden_prefix);
}

bool IsDownloadable(std::string_view i_name) {
    static constexpr std::array<std::string_view, 4> online_endings = {".paper", ".gdoc", ".gsheet", ".gslides"};
    const std::string name = ToLower(i_name);
    return std::ranges::none_of(online_endings, [&](std::string_view i_ending) { return name.ends_with(i_ending); });
}

std::string NumberedName(std::string_view i_name, unsigned i_number, bool i_is_folder) {
    const std::size_t dot = i_is_folder ? i_name.npos : i_name.rfind('.');
    const std::size_t stem_size = dot == 0 || dot == i_name.npos ? i_name.size() : dot;
    return std::string(i_name.substr(0, stem_size)) + " (" + std::to_string(i_number) + ")" +
           std::string(i_name.substr(stem_size));
}

} // namespace DevService
