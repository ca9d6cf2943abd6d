#pragma once

#include "qorv/Base.h"

#include <string>

/// The language of the log, so that its readers can search it whatever the system's language is: American English.
inline constexpr DWORD log_language = 1033;
/// The language of the person at the screen, as `FormatMessageW` chooses it.
inline constexpr DWORD user_language = 0;

/// "HRESULT 0x80004003: " and the system's message, its line ending included.
std::wstring HResultText(HRESULT hr, DWORD i_language = log_language);

/// "GetLastError 12057: " and the message of the thread's last error, which stays as it is.
std::wstring LastErrorText(DWORD i_language = log_language);
