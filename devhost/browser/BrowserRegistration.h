#pragma once

#include "qorv/Base.h"

namespace DevHost {

/// While it exists, code on this thread that creates the system's WebBrowser control gets this `Browser` instead; for
/// systems whose own control cannot show a page. Create it on the main thread after `OleInitialize`, and destroy it
/// before `OleUninitialize`. Throws a `Failure`.
class BrowserRegistration {
public:
    BrowserRegistration();
    ~BrowserRegistration();
    BrowserRegistration(const BrowserRegistration&) = delete;
    BrowserRegistration& operator=(const BrowserRegistration&) = delete;

private:
    DWORD m_cookie = 0;
};

} // namespace DevHost
