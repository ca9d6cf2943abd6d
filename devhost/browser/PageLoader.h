#pragma once

#include "browser/WebRequest.h"

#include <memory>
#include <optional>

namespace DevHost {

/// Loads one page at a time on a separate thread, so that the window stays responsive. Main thread only.
class PageLoader {
public:
    /// Posts this message to the window when a load has ended.
    PageLoader(HWND i_window, UINT i_message) noexcept : m_window(i_window), m_message(i_message) {}
    ~PageLoader() { Stop(); }
    PageLoader(const PageLoader&) = delete;
    PageLoader& operator=(const PageLoader&) = delete;

    /// Drops the current load.
    void Start(WebRequest i_request);

    /// Drops the current load, which posts no further message. Its thread ends by itself when the network allows.
    void Stop() noexcept;

    bool IsLoading() const noexcept { return m_job != nullptr; }

    /// The result that a message announces; nothing if the load was dropped after the message was posted.
    std::optional<WebReply> Take();

private:
    struct Job;

    HWND m_window;
    UINT m_message;
    std::shared_ptr<Job> m_job; ///< Null while nothing is loading.
};

} // namespace DevHost
