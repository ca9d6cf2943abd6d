#pragma once

#include "browser/WebRequest.h"

#include <memory>
#include <optional>

namespace DevHost {

/// Loads one page at a time, on a thread of its own, so that the window answers meanwhile. Main thread only.
class PageLoader {
public:
    /// Posts this message to the window when a load has ended.
    PageLoader(HWND i_window, UINT i_message) noexcept : m_window(i_window), m_message(i_message) {}
    ~PageLoader() { Stop(); }
    PageLoader(const PageLoader&) = delete;
    PageLoader& operator=(const PageLoader&) = delete;

    /// Drops the load that runs.
    void Start(WebRequest i_request);

    /// Drops the load that runs: nothing is heard of it again. Its thread ends by itself, when the network lets it.
    void Stop() noexcept;

    bool IsLoading() const noexcept { return m_job != nullptr; }

    /// What a message is about; nothing when that load was dropped after the message was posted.
    std::optional<WebReply> Take();

private:
    struct Job;

    HWND m_window;
    UINT m_message;
    std::shared_ptr<Job> m_job; ///< Null when nothing is loaded.
};

} // namespace DevHost
