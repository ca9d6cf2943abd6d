#include "ui/dialog/FolderTrail.h"

#include "core/trace/Trace.h"
#include "ui/folder/NamePath.h"

namespace Ui {

FolderTrail::FolderTrail(Qorv::IAFS_FileSys* i_file_system, FolderView& io_view)
    : m_file_system(i_file_system), m_view(io_view) {
    TRACE_FUNCTION();
}

FolderTrail::~FolderTrail() {
    TRACE_FUNCTION();
}

void FolderTrail::Connect(std::unique_ptr<FolderSource> i_source, Qorv::IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    m_source = std::move(i_source);
    m_state = State::nothing;
    m_last_shown_folder.Reset();
    if (i_folder != nullptr)
        Show(i_folder, {});
}

void FolderTrail::Disconnect() noexcept {
    TRACE_FUNCTION();
    m_source.reset();
}

void FolderTrail::Show(Qorv::IAFS_Name* i_folder_or_file, Arrival i_arrival) {
    TRACE_FUNCTION();
    if (m_source == nullptr || IsLoading())
        return;
    m_arrival = std::move(i_arrival);
    m_folder = i_folder_or_file;
    m_view.ShowPath(m_folder); // While it loads, only the worker may use the name.
    const HRESULT result = m_source->Show(m_folder);
    if (FAILED(result)) {
        OnLoadFailed({result, TakeThreadReason()});
    } else if (result == S_OK) {
        OnLoadBegun(false);
    } else if (IsShown()) {
        m_folder = m_source->GetFolder(); // The folder itself, not another name of it.
        m_view.ShowPath(m_folder);
        Arrive();
    } else {
        Reload(); // It couldn't be loaded last time.
    }
}

void FolderTrail::ShowParent() {
    TRACE_FUNCTION();
    if (const auto parent = GetParentFolder())
        Show(parent, {.selected_title = TitleOf(m_file_system, m_folder)});
}

void FolderTrail::Reload() {
    TRACE_FUNCTION();
    Reload(m_arrival);
}

void FolderTrail::Reload(Arrival i_arrival) {
    TRACE_FUNCTION();
    if (m_source == nullptr || IsLoading() || m_folder == nullptr)
        return;
    m_arrival = std::move(i_arrival);
    m_view.ShowPath(m_folder);
    if (const HRESULT result = m_source->Reload(); FAILED(result))
        OnLoadFailed({result, TakeThreadReason()});
    else
        OnLoadBegun(true);
}

void FolderTrail::OnLoadBegun(bool i_is_reload) {
    TRACE_FUNCTION();
    m_state = State::loading;
    m_view.OnLoadBegun(i_is_reload);
}

void FolderTrail::OnLoadEnded(WPARAM i_load) {
    TRACE_FUNCTION();
    if (m_source == nullptr)
        return;
    if (const auto result = m_source->TakeResult(i_load))
        OnResult(*result);
}

void FolderTrail::CheckLoad() {
    TRACE_FUNCTION();
    if (!IsLoading())
        return;
    if (const auto result = m_source->TakeUntoldResult())
        OnResult(*result);
}

void FolderTrail::OnResult(HRESULT i_result) {
    TRACE_FUNCTION();
    if (FAILED(i_result))
        return OnLoadFailed({i_result, m_source->GetFailureReason()});
    m_state = State::shown;
    m_folder = m_source->GetFolder(); // The folder itself, if the name was a file's.
    m_last_shown_folder = m_folder;
    m_is_going_back = false;
    m_view.OnFolderShown();
    m_view.ShowPath(m_folder);
    Arrive();
}

/// What the user meant by coming here.
void FolderTrail::Arrive() {
    TRACE_FUNCTION();
    const Arrival arrival = std::exchange(m_arrival, {});
    if (!arrival.selected_title.empty())
        m_view.SelectItem(arrival.selected_title, arrival.is_selection_chosen);
    if (arrival.target == nullptr)
        return;
    VARIANT_BOOL is_folder = VARIANT_FALSE;
    m_file_system->NamesAreEqual(arrival.target, m_folder, &is_folder);
    if (is_folder != VARIANT_FALSE)
        m_view.OnTypedFolderReached();
    else
        m_view.OnTypedFileReached(TitleOf(m_file_system, arrival.target));
}

void FolderTrail::OnLoadFailed(const Failure& i_failure) {
    TRACE_FUNCTION();
    m_state = State::failed;
    // A file to be saved that doesn't exist yet; its folder may.
    if (m_arrival.may_be_new && i_failure.code == E_INVALIDARG)
        if (const auto parent = GetParentFolder())
            return Show(parent, {.selected_title = {}, .target = m_arrival.target});

    m_view.OnLoadFailed(i_failure);
    if (std::exchange(m_is_going_back, false))
        return; // The user has been told of one failure already.
    const FailureAnswer answer = m_view.AskAfterLoadFailure(m_folder, i_failure);
    if (m_source == nullptr)
        return; // The dialog was closed while the question was open.
    if (answer == FailureAnswer::try_again)
        Reload();
    else if (answer == FailureAnswer::sign_in)
        m_view.SignInAgain();
    else
        GoBack();
}

void FolderTrail::GoBack() {
    TRACE_FUNCTION();
    m_arrival = {};
    if (m_last_shown_folder == nullptr || m_last_shown_folder == m_folder)
        return;
    m_is_going_back = true;
    Show(m_last_shown_folder, {});
}

Qorv::ComPtr<Qorv::IAFS_Name> FolderTrail::GetParentFolder() const {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_Name> parent;
    if (IsShown())
        parent = m_source->GetParentFolder();
    else if (m_folder != nullptr)
        m_file_system->NameGetParent(m_folder, &parent);
    return parent;
}

Qorv::ComPtr<Qorv::IAFS_Name> FolderTrail::GetOrigin() const {
    TRACE_FUNCTION();
    if (IsShown())
        return m_folder;
    return m_last_shown_folder != nullptr ? m_last_shown_folder : RootOf(m_file_system, m_folder);
}

} // namespace Ui
