#pragma once

#include <windows.h>

/// What only Wine needs. Windows' own WinINet needs none of it, and there these functions do nothing.
/// Both throw std::runtime_error with a sentence for the user when they cannot do their work.
namespace DevHost {

/// Tells whether this process runs under Wine.
bool IsWine();

/// Leads this process's WinINet to the development service: when the environment variable DEVSERVICE_ADDRESS is
/// "host:port", every connection to one of the storage service's three host names is made to that address instead, as
/// a tunnel that CONNECT opens. WinINet itself believes in a direct connection, and TLS and everything above it stay
/// its own. All other hosts are reached as ever; without the variable, or with "none", all hosts are.
/// To be called once, before the process's first request.
void RedirectWinInet();

/// Makes it safe under Wine to close a streamed upload (HttpSendRequestExW, InternetWriteFile, HttpEndRequestW) before
/// its end, and lets the close of a request's handle end a call that hangs in another thread, as it does on Windows. The
/// imports of the module that this takes are redirected; those of streamed uploads and InternetCloseHandle must be
/// there. To be called once for a module, before its first request and behind `RedirectWinInet`.
void RedirectModuleImports(HMODULE i_module);

} // namespace DevHost
