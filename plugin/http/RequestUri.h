#pragma once

#include "core/trace/Check.h"

#include <wininet.h>

#include <algorithm>
#include <string>

// In an anonymous namespace because its trace name requires it; each of the two files that use it has its own copy.
namespace {

/// The address that a request ended up at; after redirects it differs from the one asked for.
inline std::wstring GetRequestUri(HINTERNET request_handle) {
    TRACE_FUNCTION();
    DWORD size = 0; // In bytes.
    InternetQueryOptionW(request_handle, INTERNET_OPTION_URL, nullptr, &size);
    std::wstring uri(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(uri.size() * sizeof(wchar_t));
    CHECK_THROW(InternetQueryOptionW(request_handle, INTERNET_OPTION_URL, uri.data(), &size), LastErrorException());
    uri.resize(
        std::min(uri.find(L'\0'), uri.size())); // Whether the size counts the terminator differs between systems.
    return uri;
}

} // namespace
