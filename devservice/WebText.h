#pragma once

#include <map>
#include <string>
#include <string_view>

namespace DevService {

/// Text for HTML, in element content and in quoted attributes.
std::string EscapeHtml(std::string_view i_text);

/// Text for a URL's query or fragment: everything but letters, digits and "-._~" as %XX.
std::string EscapeUrl(std::string_view i_text);

/// The fields of a query or a submitted form; if a name comes twice, the first one.
using FormFields = std::map<std::string, std::string>;

/// Reads "name=value&name=value" with %XX and "+" decoded.
FormFields ParseForm(std::string_view i_text);

} // namespace DevService
