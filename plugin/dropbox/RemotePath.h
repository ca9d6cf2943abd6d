#pragma once

#include "qorv/Base.h"

#include <string>
#include <string_view>

// Paths of the service, from and to the wire.

namespace Dropbox {

/// Whether a path can go into a request at all. A control character would end a header line or break the JSON, and half
/// of a surrogate pair has no form in UTF-8: it would arrive as another name.
bool IsWellFormed(std::wstring_view i_path) noexcept;

/// Whether the service reads a path verbatim: a quotation mark or a backslash makes the arguments bad JSON, because
/// they are not escaped. Such files can be listed, but neither read nor written.
bool CanBeSent(std::wstring_view i_path) noexcept;

/// A text as a header carries it to the service, given the code page that WinINet converts header text to. The service
/// reads headers as UTF-8, so any other code page would give it another name, or none: "CafÃ©" in Windows-1252 has the
/// bytes of "Café". Characters outside ASCII therefore travel as "\uXXXX", one for each UTF-16 unit, as the service's
/// documentation asks. Everything else, including quotation marks and backslashes, is unchanged.
std::wstring HeaderText(std::wstring_view i_text, UINT i_code_page = GetACP());

/// Whether a reply names the path that was asked for. The service keeps its own case of letters and composes accents
/// (Unicode form NFC).
bool IsSamePath(std::wstring_view i_asked, std::wstring_view i_answered);

} // namespace Dropbox
