#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

// What several calls of the service's API have in common on the wire.

namespace Dropbox {

// Accept lists, as WinINet takes them.
inline const wchar_t* accept_json[] = {L"application/json; odata=verbose", nullptr};
inline const wchar_t* accept_any[] = {L"*/*", nullptr};
inline const wchar_t* accept_bytes[] = {L"application/octet-stream", nullptr};

inline constexpr wchar_t json_content[] = L"Content-Type: application/json\n";
/// Deletes, copies and moves end their one header line with nothing.
inline constexpr wchar_t json_content_without_line_end[] = L"Content-Type: application/json";

/// The arguments of a call, in JSON, after the paths were put into them as they stand. A path that is not well formed
/// is refused here, with an `HResultException`. One with a quotation mark or a backslash makes bad JSON of them, which
/// the service rejects; but one that makes good JSON of another meaning would read, replace or delete another item, and
/// is refused here as well.
std::string CheckedArguments(std::string arguments, std::initializer_list<std::wstring_view> paths);

/// The header line that carries the arguments of a download.
std::wstring DownloadArgument(const std::wstring& path);

/// The header line that carries the arguments of an upload, which replaces what is at the path.
std::wstring UploadArgument(const std::wstring& path);

} // namespace Dropbox
