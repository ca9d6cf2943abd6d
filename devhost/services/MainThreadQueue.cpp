#include "services/MainThreadQueue.h"

#include "base/Failure.h"

#include <algorithm>

namespace DevHost {
namespace {

constexpr UINT run_pending_message = WM_APP + 1;
constexpr wchar_t class_name[] = L"QorvHostMainThreadQueue";

void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

/// One call, shared by its caller and the queue; either may finish with it first.
struct MainThreadQueue::Call {
    explicit Call(Qorv::IQorv_ThreadSafeCallback* i_callback)
        : callback(i_callback), done(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    ~Call() { CloseHandle(done); }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    Qorv::ComPtr<Qorv::IQorv_ThreadSafeCallback> callback;
    HANDLE done;
    HRESULT result = E_ABORT;
};

MainThreadQueue::MainThreadQueue() {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = WindowProcedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = class_name;
    RegisterClassW(&window_class); // Fails if an earlier queue has registered the class, which is fine.
    m_window = CreateWindowW(class_name, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, window_class.hInstance, nullptr);
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make the main thread's queue");
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MainThreadQueue::~MainThreadQueue() {
    Close();
    DestroyWindow(m_window);
}

HRESULT MainThreadQueue::Execute(Qorv::IQorv_ThreadSafeCallback* i_callback, DWORD i_wait) {
    if (i_callback == nullptr)
        return E_POINTER;
    if (GetCurrentThreadId() == m_thread_id)
        return i_callback->OnExecute();
    const auto call = std::make_shared<Call>(i_callback);
    if (!Post(call))
        return E_ABORT;
    if (WaitForSingleObject(call->done, i_wait) == WAIT_OBJECT_0)
        return call->result;
    const std::lock_guard lock(m_mutex);
    std::erase(m_pending, call);
    return HRESULT_FROM_WIN32(WAIT_TIMEOUT);
}

bool MainThreadQueue::Post(const SharedCall& i_call) {
    const std::lock_guard lock(m_mutex);
    if (m_is_closed)
        return false;
    m_pending.push_back(i_call);
    PostMessageW(m_window, run_pending_message, 0, 0);
    return true;
}

bool MainThreadQueue::WaitAndPump(HANDLE i_object, DWORD i_wait) {
    const ULONGLONG begin = GetTickCount64();
    for (;;) {
        const ULONGLONG passed = GetTickCount64() - begin;
        const DWORD left =
            i_wait == INFINITE ? INFINITE : i_wait - static_cast<DWORD>(std::min<ULONGLONG>(passed, i_wait));
        const DWORD woken = MsgWaitForMultipleObjectsEx(1, &i_object, left, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (woken != WAIT_OBJECT_0 + 1)
            return woken == WAIT_OBJECT_0;
        PumpMessages();
    }
}

bool MainThreadQueue::HasPendingCalls() {
    const std::lock_guard lock(m_mutex);
    return !m_pending.empty();
}

void MainThreadQueue::Close() {
    const std::lock_guard lock(m_mutex);
    m_is_closed = true;
    for (const SharedCall& call : m_pending)
        SetEvent(call->done);
    m_pending.clear();
}

/// One call at a time, without the lock: a call may pump messages and so run the next one.
void MainThreadQueue::RunPending() {
    for (;;) {
        SharedCall call;
        {
            const std::lock_guard lock(m_mutex);
            if (m_pending.empty())
                return;
            call = m_pending.front();
            m_pending.pop_front();
        }
        call->result = call->callback->OnExecute();
        SetEvent(call->done);
    }
}

LRESULT CALLBACK MainThreadQueue::WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    auto* queue = reinterpret_cast<MainThreadQueue*>(GetWindowLongPtrW(i_window, GWLP_USERDATA));
    if (i_message != run_pending_message || queue == nullptr)
        return DefWindowProcW(i_window, i_message, i_wparam, i_lparam);
    queue->RunPending();
    return 0;
}

} // namespace DevHost
