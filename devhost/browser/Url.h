#pragma once

#include <string>
#include <string_view>

namespace DevHost {

/// An address, kept as written.
class Url {
public:
    explicit Url(std::wstring i_text) : m_text(std::move(i_text)) {}

    const std::wstring& Text() const noexcept { return m_text; }

    /// Whether the scheme is http: or https:.
    bool IsWeb() const;

    /// With its "#"; empty for none.
    std::wstring Fragment() const { return m_text.substr(FragmentStart()); }
    Url WithoutFragment() const { return Url(m_text.substr(0, FragmentStart())); }
    Url WithFragment(const std::wstring& i_fragment) const;

    /// Replaces the query, if there is one.
    Url WithQuery(const std::wstring& i_query) const;

    /// The address that a reference on a page of this address leads to (RFC 3986, section 5).
    Url Resolve(const std::wstring& i_reference) const;

    /// Name and port, "www.example.com:8080"; empty for an address without.
    std::wstring Host() const;

private:
    std::size_t FragmentStart() const;
    /// Length of "https:", 0 for none.
    std::size_t SchemeLength() const;
    /// Where the path begins: after the scheme and the host.
    std::size_t PathStart() const;
    std::size_t PathEnd() const;

    std::wstring m_text;
};

} // namespace DevHost
