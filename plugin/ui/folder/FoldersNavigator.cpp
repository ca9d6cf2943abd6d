#include "ui/folder/FoldersNavigator.h"

#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"

FoldersNavigator::FoldersNavigator(Qorv::IQorv_Inst* i_host_instance, Qorv::IAFS_FileSys* i_file_system,
                                   std::function<void(HRESULT)> i_completion)
    : m_host_instance(i_host_instance), m_file_system(i_file_system), m_completion(std::move(i_completion)) {
    TRACE_FUNCTION();
}

FoldersNavigator::~FoldersNavigator() {
    TRACE_FUNCTION();
    Stop();
}

HRESULT FoldersNavigator::SetFolder(Qorv::IAFS_Name* folder_or_file_item) {
    TRACE_FUNCTION();
    VARIANT_BOOL are_equal = VARIANT_FALSE;
    CHECK_HRESULT(m_file_system->NamesAreEqual(m_folder, folder_or_file_item, &are_equal));
    if (m_folder != nullptr && are_equal != VARIANT_FALSE)
        return TRACE_RESULT(S_OK);
    m_parent_folder.Reset();
    // Deliberately the same object, not an equal location: then it is a child of the shown folder.
    if (m_items.contains(folder_or_file_item))
        m_parent_folder = m_folder;
    m_folder = folder_or_file_item;
    CHECK_HRESULT(Refresh());
    return TRACE_RESULT(S_OK);
}

HRESULT FoldersNavigator::Refresh() {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        m_items.clear();
        if (m_folder == nullptr) {
            CHECK_HRESULT(CallThreadSafe(m_host_instance, [this] { m_completion(S_FALSE); }));
            return TRACE_RESULT(S_FALSE);
        }
        if (m_is_delivered)
            m_load_task.Join(); // This takes only a moment.
        else if (!IsRunning())
            m_load_task.Wait(); // It was abandoned.
        CHECK_RETURN(!m_is_running.exchange(true), E_FAIL);
        Launch();
        return TRACE_RESULT(S_OK);
    };
}

void FoldersNavigator::Launch() {
    TRACE_FUNCTION();
    m_is_delivered = false;
    m_failure_reason = {};
    try {
        m_stop_flag = Qorv::Create<Ui::StopFlag>();
        CHECK_THROW(m_stop_flag != nullptr, HResultException(E_OUTOFMEMORY));
        const Ui::StoppableFileSystem file_system(m_file_system, m_stop_flag);
        auto load = std::make_shared<Ui::FolderLoad>(file_system, m_folder, m_parent_folder, m_is_running);
        m_load_task = Ui::WorkerTask([this, operation = m_stop_flag->Operation(), load = std::move(load)]() mutable {
            const StopScope scope(operation);
            Complete(*load);
            load.reset(); // Nothing of a load is kept once it is over.
            m_is_running.store(false);
        });
    } catch (...) {
        m_is_running.store(false);
        throw;
    }
}

/// The whole of a load, on its worker.
HRESULT FoldersNavigator::Complete(Ui::FolderLoad& io_load) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        const HRESULT result = io_load.Run();
        bool is_delivered = false;
        if (result != Qorv::ErrorCanceled)
            CHECK_HRESULT(CallThreadSafe(m_host_instance, [&] { is_delivered = Deliver(io_load, result); }));
        if (!is_delivered)
            return trace_function.Return(Qorv::ErrorCanceled, L"canceled");
        return TRACE_RESULT(S_OK);
    };
}

/// On the UI thread, where loads are stopped, so that nothing can stop this one between the check and the callback.
/// False if it was stopped before.
bool FoldersNavigator::Deliver(Ui::FolderLoad& io_load, HRESULT i_result) {
    TRACE_FUNCTION();
    if (!m_is_running)
        return false;
    m_folder = std::move(io_load.m_folder);
    m_parent_folder = std::move(io_load.m_parent_folder);
    m_items = std::move(io_load.m_items);
    m_failure_reason = std::move(io_load.m_failure_reason);
    m_completion(i_result);
    m_is_delivered = true;
    return true;
}

void FoldersNavigator::Abandon() noexcept {
    TRACE_FUNCTION();
    m_is_running.store(false);
    if (m_stop_flag != nullptr)
        m_stop_flag->Set(); // A call that is under way ends too.
}

void FoldersNavigator::Stop() noexcept {
    TRACE_FUNCTION();
    Abandon();
    m_load_task.Wait();
}
