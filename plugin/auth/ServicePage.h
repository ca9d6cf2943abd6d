#pragma once

#include "core/trace/Trace.h"
#include "dropbox/ServiceConfiguration.h"

#include <string>
#include <string_view>

/// The URL of a page of the service's web site, given its path ("/login").
inline std::wstring ServicePage(std::wstring_view i_path) {
    TRACE_FUNCTION();
    std::wstring url(Dropbox::ServiceConfiguration::scheme_prefix);
    return url.append(Dropbox::ServiceConfiguration::web_host).append(i_path);
}
