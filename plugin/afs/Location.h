#pragma once

#include <string>
#include <string_view>

namespace SharePoint {
class Object;
}

// The text of a location: "dropbox://", the user id, and the path in the service's own form ("/Documents/a.pdf"). The
// path of an account's root is empty.

inline constexpr std::wstring_view location_prefix = L"dropbox://";

/// Both parts are views of the text that was split.
struct LocationParts {
    std::wstring_view user_id; ///< Up to the first "/" after the prefix; may be empty.
    std::wstring_view path;    ///< The rest, empty or beginning with "/".
};

/// A text without the prefix (which is case-sensitive) is only a path and names no user.
LocationParts SplitLocation(std::wstring_view i_url) noexcept;

/// The location of a remote object.
std::wstring LocationOf(SharePoint::Object& i_object);

/// What follows `i_parent_url` in `i_url`, or null if `i_url` does not begin with it. Compares character by character,
/// ignoring case. A "/" between the two is deliberately not required: "dropbox://id/Docs2" begins with
/// "dropbox://id/Docs".
const wchar_t* RestBehindParent(const std::wstring& i_url, const std::wstring& i_parent_url) noexcept;
