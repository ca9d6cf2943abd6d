#include "afs/Location.h"

#include "core/trace/Text.h"
#include "core/trace/Trace.h"
#include "dropbox/SharePoint.h"

#include <algorithm>

LocationParts SplitLocation(std::wstring_view i_url) noexcept {
    TRACE_FUNCTION();
    if (!i_url.starts_with(location_prefix))
        return {i_url.substr(0, 0), i_url};
    const std::wstring_view rest = i_url.substr(location_prefix.size());
    const std::size_t path_start = std::min(rest.find(L'/'), rest.size());
    return {rest.substr(0, path_start), rest.substr(path_start)};
}

std::wstring LocationOf(SharePoint::Object& i_object) {
    TRACE_FUNCTION();
    std::wstring url(location_prefix);
    url += i_object.GetWeb()->GetUserInformation()._id;
    url += i_object.GetInformation()._path;
    return url;
}

const wchar_t* RestBehindParent(const std::wstring& i_url, const std::wstring& i_parent_url) noexcept {
    TRACE_FUNCTION();
    if (i_url.size() < i_parent_url.size())
        return nullptr;
    const std::size_t length = i_parent_url.size();
    return IsSameName(std::wstring_view(i_url).substr(0, length), i_parent_url) ? i_url.c_str() + length : nullptr;
}
