#pragma once

#include "qorv/Base.h"

#include <string>

/// The language of the log: always American English, so that its readers can search it on any system.
inline constexpr DWORD log_language = 1033;
/// The user's language, as `FormatMessageW` chooses it.
inline constexpr DWORD user_language = 0;

/// "HRESULT 0x80004003: " and the system's message, including its line ending.
std::wstring HResultText(HRESULT hr, DWORD i_language = log_language);

/// "GetLastError 12057: " and the message for the thread's last error, which stays unchanged.
std::wstring LastErrorText(DWORD i_language = log_language);
