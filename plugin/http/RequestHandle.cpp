#include "http/RequestHandle.h"

#include "core/host/StopSignal.h"
#include "core/trace/Check.h"

#include <atomic>

namespace Http {

namespace {

bool IsOperationStopped() noexcept {
    TRACE_FUNCTION();
    const auto signal = StopSignal::OfThread();
    return signal != nullptr && signal->IsStopped();
}

HResultException OperationStopped() {
    TRACE_FUNCTION();
    return {L"The operation was stopped", Qorv::ErrorCanceled};
}

} // namespace

class RequestHandle::Closing final : public Stoppable {
public:
    explicit Closing(HINTERNET i_handle) : m_handle(i_handle), m_signal(StopSignal::OfThread()) {
        TRACE_FUNCTION();
        if (m_signal != nullptr)
            m_signal->Add(*this);
    }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;
    ~Closing() {
        TRACE_FUNCTION();
        if (m_signal != nullptr)
            m_signal->Remove(*this);
        Close();
    }

    HINTERNET Handle() const noexcept {
        TRACE_FUNCTION();
        return m_handle;
    }

    void Stop() noexcept override {
        TRACE_FUNCTION();
        Close();
    }

private:
    void Close() noexcept {
        TRACE_FUNCTION();
        if (const HINTERNET handle = m_handle.exchange(nullptr))
            InternetCloseHandle(handle);
    }

    std::atomic<HINTERNET> m_handle;
    const std::shared_ptr<StopSignal> m_signal; ///< Null for an operation that nobody stops.
};

RequestHandle::RequestHandle() noexcept {
    TRACE_FUNCTION();
}

RequestHandle::RequestHandle(HINTERNET i_handle)
    : m_closing(i_handle != nullptr ? std::make_unique<Closing>(i_handle) : nullptr) {
    TRACE_FUNCTION();
}

RequestHandle::RequestHandle(RequestHandle&& io_other) noexcept = default;

RequestHandle& RequestHandle::operator=(RequestHandle&& io_other) noexcept = default;

RequestHandle::~RequestHandle() {
    TRACE_FUNCTION();
}

RequestHandle::operator HINTERNET() const noexcept {
    TRACE_FUNCTION();
    return m_closing != nullptr ? m_closing->Handle() : nullptr;
}

HResultException RequestFailure() {
    TRACE_FUNCTION();
    HResultException failure = LastErrorException();
    return IsOperationStopped() ? OperationStopped() : failure;
}

void CheckIsWanted() {
    TRACE_FUNCTION();
    CHECK_THROW(!IsOperationStopped(), OperationStopped());
}

} // namespace Http
