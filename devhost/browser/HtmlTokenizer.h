#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace DevHost {

/// A piece of an HTML document.
struct HtmlToken {
    enum class Kind { Text, StartTag, EndTag };

    Kind kind = Kind::Text;
    std::wstring text;                               ///< The characters, or the tag's name in lower case.
    std::map<std::wstring, std::wstring> attributes; ///< Names in lower case.

    std::wstring Attribute(const std::wstring& i_name) const;
    bool HasAttribute(const std::wstring& i_name) const { return attributes.contains(i_name); }
};

/// Splits a document into its pieces. Accepts any text: whatever isn't a tag is text. Skips comments, scripts and style
/// sheets, and replaces entities with their characters.
std::vector<HtmlToken> TokenizeHtml(std::wstring_view i_document);

} // namespace DevHost
