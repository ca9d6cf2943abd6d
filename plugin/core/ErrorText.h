#pragma once

#include "qorv/Base.h"

#include <wininet.h>

#include <string>

/// "HRESULT 0x80004003: " and the system's message, its line ending included.
std::wstring HResultText(HRESULT hr);

/// "GetLastError 12057: " and the message of the thread's last error, which stays as it is.
std::wstring LastErrorText();

/// "HTTP 409: " and the status text of a request's reply.
std::wstring HttpStatusText(HINTERNET i_request);

/// The status code of a request's reply, or 0 when there is none.
DWORD HttpStatusCode(HINTERNET i_request) noexcept;
