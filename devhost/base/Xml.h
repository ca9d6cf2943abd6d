#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace DevHost {

/// One element of an XML document with its descendants.
struct XmlElement {
    std::wstring name;
    std::map<std::wstring, std::wstring> attributes;
    std::wstring text; ///< All text directly in the element.
    std::vector<XmlElement> children;

    /// An attribute's value; empty if the element has no attribute of this name.
    std::wstring Attribute(const std::wstring& i_name) const;
};

/// Reads a document and returns its root. Throws a `Failure` with E_INVALIDARG for what isn't well-formed XML.
XmlElement ParseXml(const void* i_data, std::size_t i_size);

} // namespace DevHost
