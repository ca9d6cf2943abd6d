#pragma once

#include <optional>
#include <string_view>

namespace DevService {

/// The three hosts that the service plays.
enum class Host { Api, Content, Web };

inline constexpr std::string_view api_host = DROPBOX_API_HOST;
inline constexpr std::string_view content_host = DROPBOX_CONTENT_HOST;
inline constexpr std::string_view web_host = DROPBOX_WEB_HOST;

/// The host with that name, ignoring case; empty for names that are not ours.
std::optional<Host> FindHost(std::string_view i_name);

/// The name of the host as configured.
std::string_view HostName(Host i_host);

} // namespace DevService
