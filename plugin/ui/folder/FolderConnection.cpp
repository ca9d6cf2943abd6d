#include "ui/folder/FolderConnection.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "ui/folder/NamePath.h"

namespace Ui {

FolderConnection::FolderConnection(Qorv::IQorv_Inst* i_host_instance, Qorv::IAFS_FileSys* i_file_system, HWND i_window,
                                   UINT i_message, Reaper& io_reaper)
    : m_host_instance(i_host_instance)
    , m_file_system(i_file_system)
    , m_reaper(io_reaper)
    , m_completion(std::make_shared<Completion>(Completion{i_window, i_message})) {
    TRACE_FUNCTION();
    MakeNavigator();
}

FolderConnection::~FolderConnection() {
    TRACE_FUNCTION();
    LeaveNavigator();
}

void FolderConnection::MakeNavigator() {
    TRACE_FUNCTION();
    m_navigator = std::make_shared<FoldersNavigator>(
        m_host_instance, m_file_system, [completion = m_completion](HRESULT i_result) {
            completion->result = i_result;
            PostMessageW(completion->window, completion->message, completion->load, 0);
        });
}

void FolderConnection::LeaveNavigator() noexcept {
    TRACE_FUNCTION();
    m_navigator->Abandon();
    m_reaper.Take(std::move(m_navigator));
}

/// Whether the navigator takes a name for its folder's though it only resembles it, as "/strasse" resembles "/straße".
bool FolderConnection::IsLikeness(Qorv::IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    Qorv::IAFS_Name* const folder = m_navigator->GetFolder();
    VARIANT_BOOL are_equal = VARIANT_FALSE;
    return folder != nullptr && SUCCEEDED(m_file_system->NamesAreEqual(folder, i_name, &are_equal)) &&
           are_equal != VARIANT_FALSE && !IsSameName(PathOf(m_file_system, folder), PathOf(m_file_system, i_name));
}

HRESULT FolderConnection::Show(Qorv::IAFS_Name* i_folder_or_file) {
    TRACE_FUNCTION();
    if (IsLikeness(i_folder_or_file)) {
        LeaveNavigator();
        MakeNavigator(); // It has no folder yet.
    }
    CHECK_HRESULT(Begin([&] { return m_navigator->SetFolder(i_folder_or_file); }));
    return IsLoading() ? TRACE_RESULT(S_OK) : TRACE_RESULT(S_FALSE);
}

HRESULT FolderConnection::Reload() {
    TRACE_FUNCTION();
    CHECK_HRESULT(Begin([&] { return m_navigator->Refresh(); }));
    m_phase = Phase::loading; // Also if it is over already and nobody was told: `TakeUntoldResult` notices.
    return TRACE_RESULT(S_OK);
}

/// Messages may arrive while the navigator waits for an earlier load to end, so loading starts before that.
HRESULT FolderConnection::Begin(const std::function<HRESULT()>& i_begin) {
    TRACE_FUNCTION();
    m_phase = Phase::beginning;
    ++m_completion->load;
    m_completion->result = E_UNEXPECTED;
    const HRESULT result = i_begin();
    m_phase = m_navigator->IsRunning() ? Phase::loading : Phase::idle;
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}

std::optional<HRESULT> FolderConnection::TakeResult(WPARAM i_load) noexcept {
    TRACE_FUNCTION();
    if (!IsLoading() || i_load != m_completion->load)
        return std::nullopt;
    m_phase = Phase::idle;
    return m_completion->result;
}

std::optional<HRESULT> FolderConnection::TakeUntoldResult() noexcept {
    TRACE_FUNCTION();
    if (m_phase != Phase::loading || m_navigator->IsRunning())
        return std::nullopt;
    return TakeResult(m_completion->load);
}

} // namespace Ui
