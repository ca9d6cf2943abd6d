#pragma once

#include "qorv/Base.h"

namespace DevHost {

/// While it lives, whoever on this thread creates the system's WebBrowser control gets the `Browser` of this folder
/// instead. For systems whose own control cannot show a page. To be made on the main thread, after `OleInitialize`, and
/// to go before `OleUninitialize`. Throws a `Failure`.
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
