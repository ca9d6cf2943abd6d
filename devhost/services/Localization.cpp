#include "services/Localization.h"

#include "base/Failure.h"
#include "base/Xml.h"

namespace DevHost {

void Localization::Merge(const std::string& i_document) {
    const XmlElement table = ParseXml(i_document.data(), i_document.size());
    const std::wstring name_space = table.Attribute(L"namespace");
    if (table.name != L"localization" || name_space.empty())
        throw Failure(E_INVALIDARG, L"The document isn't a localization table");
    if (table.Attribute(L"language") != L"en")
        return;
    for (const XmlElement& element : table.children)
        if (element.name != L"string" || element.Attribute(L"id").empty())
            throw Failure(E_INVALIDARG, L"The localization table holds something other than texts with an id");
    const std::lock_guard lock(m_mutex);
    for (const XmlElement& element : table.children)
        m_texts[name_space + L"." + element.Attribute(L"id")] = element.text;
}

std::optional<std::wstring> Localization::Find(const std::wstring& i_id) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_texts.find(i_id);
    return found != m_texts.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace DevHost
