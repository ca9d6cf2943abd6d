#include "browser/Url.h"

#include "base/Unicode.h"

#include <algorithm>

namespace DevHost {
namespace {

/// Removes "." and ".." from a path.
std::wstring WithoutDotSegments(std::wstring_view i_path) {
    std::wstring result;
    while (!i_path.empty()) {
        const std::size_t end = std::min(i_path.find(L'/', 1), i_path.size()); // A segment with the slash before it.
        const std::wstring_view segment = i_path.substr(0, end);
        const bool is_last = end == i_path.size();
        i_path.remove_prefix(end);
        if (segment == L"/..")
            result.erase(std::min(result.rfind(L'/'), result.size()));
        else if (segment != L"/.")
            result += segment;
        if (is_last && (segment == L"/.." || segment == L"/."))
            result += L'/';
    }
    return result;
}

} // namespace

bool Url::IsWeb() const {
    const std::wstring_view scheme = std::wstring_view(m_text).substr(0, SchemeLength());
    return EqualIgnoringCase(scheme, L"https:") || EqualIgnoringCase(scheme, L"http:");
}

Url Url::WithFragment(const std::wstring& i_fragment) const {
    return Url(WithoutFragment().Text() + i_fragment);
}

Url Url::WithQuery(const std::wstring& i_query) const {
    return Url(m_text.substr(0, PathEnd()) + L"?" + i_query + Fragment());
}

Url Url::Resolve(const std::wstring& i_reference) const {
    const Url reference(i_reference);
    if (reference.SchemeLength() != 0)
        return reference;
    if (i_reference.starts_with(L"//"))
        return Url(m_text.substr(0, SchemeLength()) + i_reference);
    if (i_reference.empty() || i_reference.front() == L'#')
        return WithFragment(i_reference);
    const std::wstring path = m_text.substr(PathStart(), PathEnd() - PathStart());
    if (i_reference.front() == L'?')
        return Url(m_text.substr(0, PathEnd()) + i_reference);
    const std::size_t path_length = reference.PathEnd();
    std::wstring new_path = i_reference.substr(0, path_length);
    if (new_path.front() != L'/')
        new_path = (path.empty() ? L"/" : path.substr(0, path.rfind(L'/') + 1)) + new_path;
    return Url(m_text.substr(0, PathStart()) + WithoutDotSegments(new_path) + i_reference.substr(path_length));
}

std::wstring Url::Host() const {
    const std::size_t scheme = SchemeLength();
    if (m_text.compare(scheme, 2, L"//") != 0)
        return {};
    return m_text.substr(scheme + 2, PathStart() - scheme - 2);
}

std::size_t Url::FragmentStart() const {
    return std::min(m_text.find(L'#'), m_text.size());
}

std::size_t Url::SchemeLength() const {
    const std::size_t colon = m_text.find(L':');
    return colon != std::wstring::npos && colon != 0 && m_text.find_first_of(L"/?#") > colon ? colon + 1 : 0;
}

std::size_t Url::PathStart() const {
    const std::size_t scheme = SchemeLength();
    if (m_text.compare(scheme, 2, L"//") != 0)
        return scheme;
    return std::min(m_text.find_first_of(L"/?#", scheme + 2), m_text.size());
}

std::size_t Url::PathEnd() const {
    return std::min(m_text.find_first_of(L"?#", PathStart()), m_text.size());
}

} // namespace DevHost
