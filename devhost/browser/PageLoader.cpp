#include "browser/PageLoader.h"

#include "browser/WebFetch.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace DevHost {

/// One load, shared by the loader and the load's thread; either may finish with it first.
struct PageLoader::Job {
    WebRequest request;
    std::atomic<bool> is_stopped = false;
    std::mutex mutex;      ///< Guards the two below.
    HWND window = nullptr; ///< Null once the load is dropped, because the window may be gone.
    std::optional<WebReply> reply;

    void Run(UINT i_message) {
        WebReply result = FetchFromWeb(request, is_stopped);
        const std::lock_guard lock(mutex);
        reply = std::move(result);
        if (window != nullptr)
            PostMessageW(window, i_message, 0, 0);
    }
};

void PageLoader::Start(WebRequest i_request) {
    Stop();
    m_job = std::make_shared<Job>();
    m_job->request = std::move(i_request);
    m_job->window = m_window;
    // WinINet's calls cannot be interrupted safely, and nothing should wait for them, so the thread owns what it needs.
    std::thread([job = m_job, message = m_message] { job->Run(message); }).detach();
}

void PageLoader::Stop() noexcept {
    if (const std::shared_ptr<Job> job = std::move(m_job)) {
        job->is_stopped = true;
        const std::lock_guard lock(job->mutex);
        job->window = nullptr;
    }
}

std::optional<WebReply> PageLoader::Take() {
    if (m_job == nullptr)
        return std::nullopt;
    std::optional<WebReply> reply;
    {
        const std::lock_guard lock(m_job->mutex);
        reply = std::move(m_job->reply);
    }
    if (reply)
        m_job.reset();
    return reply;
}

} // namespace DevHost
