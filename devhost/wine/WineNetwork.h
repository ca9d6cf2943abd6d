#pragma once

#include <windows.h>

/// Workarounds for Wine. Windows' own WinINet needs none of them, and these functions do nothing there. Both throw
/// std::runtime_error with a sentence for the user if they fail.
namespace DevHost {

/// Whether this process runs under Wine.
bool IsWine();

/// Redirects this process's WinINet to the development service: if the environment variable DEVSERVICE_ADDRESS is
/// "host:port", every connection to one of the storage service's three host names goes to that address instead, through
/// a CONNECT tunnel. WinINet believes that the connection is direct; TLS and everything above it stay its own. Other
/// hosts are reached as usual; without the variable, or with "none", all hosts are. Call once, before the process's
/// first request.
void RedirectWinInet();

/// Makes it safe under Wine to close a streamed upload (HttpSendRequestExW, InternetWriteFile, HttpEndRequestW) before
/// its end, and lets closing a request's handle end a call that hangs in another thread, as it does on Windows.
/// Redirects the module's imports for this; those of streamed uploads and InternetCloseHandle must exist. Call once per
/// module, before its first request and after `RedirectWinInet`.
void RedirectModuleImports(HMODULE i_module);

} // namespace DevHost
