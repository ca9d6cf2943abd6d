#pragma once

// Where the storage service is. The values come from the build (the `DROPBOX_...` cache variables).

namespace Dropbox::ServiceConfiguration {

inline constexpr wchar_t scheme_prefix[] = L"https://";
inline constexpr wchar_t api_host[] = L"" DROPBOX_API_HOST;
inline constexpr wchar_t content_host[] = L"" DROPBOX_CONTENT_HOST;
inline constexpr wchar_t web_host[] = L"" DROPBOX_WEB_HOST;
inline constexpr wchar_t client_id[] = L"" DROPBOX_CLIENT_ID;

} // namespace Dropbox::ServiceConfiguration
