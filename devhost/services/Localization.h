#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace DevHost {

/// The merged localization tables. The host speaks English: tables of other languages are left out. Any thread.
class Localization {
public:
    /// Adds a table (`<localization language="en" namespace="db">` with `<string id="...">` elements); the full id of a
    /// text is the namespace, a dot and the id. Replaces existing texts. Throws a `Failure` with E_INVALIDARG, and adds
    /// nothing, if the document isn't a table.
    void Merge(const std::string& i_document);

    /// The text with this full id; none for an unknown one.
    std::optional<std::wstring> Find(const std::wstring& i_id) const;

private:
    mutable std::mutex m_mutex;
    std::map<std::wstring, std::wstring> m_texts;
};

} // namespace DevHost
