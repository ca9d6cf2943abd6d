#pragma once

#include "core/trace/Check.h"

#include <wininet.h>

#include <string>

// Stands in an anonymous namespace because its trace name says so: each of the two files that use it has its own.
namespace {

/// The address that a request ended at, which differs from the one asked for after redirects.
inline std::wstring GetRequestUri(HINTERNET request_handle) {
    TRACE_FUNCTION();
    DWORD size = 0; // In bytes.
    InternetQueryOptionW(request_handle, INTERNET_OPTION_URL, nullptr, &size);
    std::wstring uri(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(uri.size() * sizeof(wchar_t));
    CHECK_THROW(InternetQueryOptionW(request_handle, INTERNET_OPTION_URL, uri.data(), &size), LastErrorException());
    uri.resize(uri.find(L'\0')); // Whether the size counts the terminator differs between systems.
    return uri;
}

} // namespace
