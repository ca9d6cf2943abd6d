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

/// The outcome, after following redirects.
struct WebReply {
    HRESULT result = S_OK; ///< A failure if no server answered; everything but the address is empty then.
    std::wstring url;      ///< Of the last request, with its fragment.
    DWORD status = 0;      ///< HTTP's.
    std::wstring content_type;
    std::string body;
};

} // namespace DevHost
