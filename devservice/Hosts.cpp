#include "Hosts.h"

#include <boost/beast/core/string.hpp>

namespace DevService {

std::optional<Host> FindHost(std::string_view i_name) {
    for (const Host host : {Host::Api, Host::Content, Host::Web}) {
        const std::string_view name = HostName(host);
        if (boost::beast::iequals({i_name.data(), i_name.size()}, {name.data(), name.size()}))
            return host;
    }
    return std::nullopt;
}

std::string_view HostName(Host i_host) {
    switch (i_host) {
    case Host::Api:
        return api_host;
    case Host::Content:
        return content_host;
    case Host::Web:
        return web_host;
    }
    return {};
}

} // namespace DevService
