#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// What the browser asks a server for.
struct WebRequest {
    std::wstring url;     ///< May have a fragment.
    std::string body;     ///< Of a POST: a form's data.
    bool is_post = false; ///< Else a GET.
};

/// What came of it, redirects followed.
struct WebReply {
    HRESULT result = S_OK; ///< A failure when no server answered; then the rest, except the address, is empty.
    std::wstring url;      ///< Of the last request, with its fragment.
    DWORD status = 0;      ///< HTTP's.
    std::wstring content_type;
    std::string body;
};

} // namespace DevHost
