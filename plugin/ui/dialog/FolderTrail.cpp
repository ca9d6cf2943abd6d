#include "ui/dialog/FolderTrail.h"

#include "core/trace/LogText.h"
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
    m_shown = {};
    m_is_source_shown = false;
    if (i_folder != nullptr)
        Show(i_folder, {.target = i_folder, .is_start = true});
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
    if (result != S_FALSE)
        return OnBegun(result);
    if (!m_is_source_shown)
        return OnBegun(m_source->Reload()); // It couldn't be loaded last time.
    m_state = State::shown;
    m_folder = m_shown.folder; // The folder itself, not another name of it.
    m_view.ShowPath(m_folder);
    Arrive();
}

void FolderTrail::ShowParent() {
    TRACE_FUNCTION();
    if (const auto parent = GetParentFolder())
        Show(parent, {.selected_title = TitleOf(m_file_system, m_folder)});
}

void FolderTrail::Forget(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names) {
    TRACE_FUNCTION();
    for (const auto& name : i_names)
        m_shown.items.erase(name);
}

void FolderTrail::Reload() {
    TRACE_FUNCTION();
    Reload(m_arrival);
}

/// The source may have tried another folder since.
void FolderTrail::Reload(Arrival i_arrival) {
    TRACE_FUNCTION();
    if (m_source == nullptr || IsLoading() || m_folder == nullptr)
        return;
    m_arrival = std::move(i_arrival);
    m_view.ShowPath(m_folder);
    const HRESULT result = m_source->Show(m_folder);
    OnBegun(result == S_FALSE ? m_source->Reload() : result);
}

void FolderTrail::OnBegun(HRESULT i_result) {
    TRACE_FUNCTION();
    m_is_source_shown = false;
    if (FAILED(i_result))
        return OnLoadFailed({i_result, TakeThreadReason()});
    m_state = State::loading;
    m_view.OnLoadBegun(m_folder == m_shown.folder);
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
    m_shown = {m_folder, m_source->GetParentFolder(), m_source->GetItems()};
    m_is_source_shown = true;
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
    if (arrival.gone != nullptr)
        return m_view.OnStartFolderGone(arrival.gone);
    if (arrival.target == nullptr)
        return;
    const bool is_folder = IsSameFolder(arrival.target, m_folder);
    if (is_folder && !arrival.is_start)
        m_view.OnTypedFolderReached();
    else if (!is_folder && arrival.is_start)
        m_view.OnStartFileReached(TitleOf(m_file_system, arrival.target));
    else if (!is_folder)
        m_view.OnTypedFileReached(TitleOf(m_file_system, arrival.target));
}

bool FolderTrail::IsSameFolder(Qorv::IAFS_Name* i_left, Qorv::IAFS_Name* i_right) const {
    TRACE_FUNCTION();
    VARIANT_BOOL are_equal = VARIANT_FALSE;
    m_file_system->NamesAreEqual(i_left, i_right, &are_equal);
    return are_equal != VARIANT_FALSE;
}

/// For what doesn't exist: a file to be saved, whose folder may, or where the dialog was to begin.
bool FolderTrail::ShowParentInstead() {
    TRACE_FUNCTION();
    if (!m_arrival.may_be_new && !m_arrival.is_start)
        return false;
    const auto parent = GetParentFolder();
    if (parent == nullptr)
        return false;
    Arrival arrival{.target = m_arrival.target};
    if (m_arrival.is_start)
        arrival = {.is_start = true, .gone = m_arrival.gone != nullptr ? m_arrival.gone : m_folder};
    Show(parent, std::move(arrival));
    return true;
}

/// Leads back to the folder that was shown before, if there is one, and asks what to do.
void FolderTrail::OnLoadFailed(const Failure& i_failure) {
    TRACE_FUNCTION();
    m_state = State::failed;
    if (i_failure.code == E_INVALIDARG && ShowParentInstead())
        return;
    const Qorv::ComPtr<Qorv::IAFS_Name> failed_folder = m_folder;
    Arrival arrival = std::exchange(m_arrival, {});
    TRACE_TEXT(FormatLogText(L"WARNING: Loading a folder failed with result 0x%08lX - %ls",
                             static_cast<unsigned long>(i_failure.code),
                             m_shown.folder != nullptr ? L"staying in the one before" : L"there is none before"));
    if (m_shown.folder != nullptr) {
        m_state = State::shown;
        m_folder = m_shown.folder;
        m_view.ShowPath(m_folder);
        m_view.OnLoadGivenUp();
    } else {
        m_view.OnLoadFailed(i_failure);
    }
    const FailureAnswer answer = m_view.AskAfterLoadFailure(failed_folder, i_failure);
    if (m_source == nullptr)
        return; // The dialog was closed while the question was open.
    if (answer == FailureAnswer::try_again)
        Show(failed_folder, std::move(arrival));
    else if (answer == FailureAnswer::sign_in)
        m_view.SignInAgain(failed_folder);
}

Qorv::ComPtr<Qorv::IAFS_Name> FolderTrail::GetParentFolder() const {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_Name> parent;
    if (IsShown())
        parent = m_shown.parent;
    else if (m_folder != nullptr)
        m_file_system->NameGetParent(m_folder, &parent);
    return parent;
}

Qorv::ComPtr<Qorv::IAFS_Name> FolderTrail::GetOrigin() const {
    TRACE_FUNCTION();
    if (IsShown())
        return m_folder;
    return m_shown.folder != nullptr ? m_shown.folder : RootOf(m_file_system, m_folder);
}

} // namespace Ui
