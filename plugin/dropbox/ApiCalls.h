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
/// Deletes, copies and moves send this header line without a line end.
inline constexpr wchar_t json_content_without_line_end[] = L"Content-Type: application/json";

/// The arguments of a call, in JSON, with the paths inserted verbatim. Throws an `HResultException` for a path that is
/// not well formed. A quotation mark or a backslash in a path makes the JSON bad, and the service rejects it; a path
/// that leaves good JSON with another meaning would read, replace or delete another item, so it is refused here as
/// well.
std::string CheckedArguments(std::string arguments, std::initializer_list<std::wstring_view> paths);

/// The header line that carries the arguments of a download.
std::wstring DownloadArgument(const std::wstring& path);

/// The header line that carries the arguments of an upload, which replaces what is at the path.
std::wstring UploadArgument(const std::wstring& path);

} // namespace Dropbox
