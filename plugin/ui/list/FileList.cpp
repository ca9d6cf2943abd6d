#include "ui/list/FileList.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Check.h"
#include "qorv/Values.h"
#include "ui/names/NameExtension.h"

#include <algorithm>
#include <unordered_set>

namespace Ui {
namespace {

constexpr LONG no_row = -1; // For the selection: all rows.
constexpr LONG whole_name = -1;

struct Column {
    Qorv::PCStr title_id;
    LONG width; ///< Layout units. Together they leave room for a scroll bar.
    Qorv::UIX_Alignment alignment;
};

/// In the order of `FileColumn`.
constexpr Column columns[] = {
    {L"db.col.name", 330, Qorv::UIX_Alignment_Left},
    {L"db.col.size", 80, Qorv::UIX_Alignment_Right},
    {L"db.col.kind", 100, Qorv::UIX_Alignment_Left},
    {L"db.col.date", 138, Qorv::UIX_Alignment_Left},
};

} // namespace

FileList::FileList(Qorv::IQorv_Inst* i_host_instance, Qorv::IUIX_List* i_control, const DialogUi& i_ui)
    : m_host_instance(i_host_instance), m_control(i_control), m_ui(i_ui), m_cell_text(i_host_instance) {
    TRACE_FUNCTION();
}

FileList::~FileList() {
    TRACE_FUNCTION();
}

HRESULT FileList::Init() {
    TRACE_FUNCTION();
    for (const Column& column : columns)
        CHECK_HRESULT(m_control->AddColumn(FormatString(m_host_instance, column.title_id).c_str(), column.width,
                                           column.alignment));
    CHECK_HRESULT(m_control->put_SortMark(static_cast<LONG>(m_sort_column), VARIANT_FALSE));
    CHECK_HRESULT(m_control->put_Source(this));
    return TRACE_RESULT(S_OK);
}

void FileList::Close() noexcept {
    TRACE_FUNCTION();
    m_control->put_Source(nullptr);
    m_control.Reset();
    m_rows.Clear();
    m_rows.SetFilter(nullptr, false);
}

void FileList::SetFilter(std::shared_ptr<NamesFilter> i_filter, bool i_is_folders_only) {
    TRACE_FUNCTION();
    m_rows.SetFilter(std::move(i_filter), i_is_folders_only);
}

HRESULT FileList::Empty(const std::wstring& i_text) {
    TRACE_FUNCTION();
    m_naming.reset();
    m_rows.Clear();
    CHECK_HRESULT(m_control->put_EmptyText(i_text.c_str()));
    CHECK_HRESULT(m_control->put_RowCount(0));
    CHECK_HRESULT(m_control->put_IsBusy(VARIANT_FALSE));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::BeginLoading(const std::wstring& i_text) {
    TRACE_FUNCTION();
    if (m_naming)
        CHECK_HRESULT(ShowRows(RememberSelection())); // Without what is being typed.
    CHECK_HRESULT(m_control->put_EmptyText(i_text.c_str()));
    CHECK_HRESULT(m_control->put_IsBusy(VARIANT_TRUE));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::EndLoading() {
    TRACE_FUNCTION();
    CHECK_HRESULT(m_control->put_IsBusy(VARIANT_FALSE));
    CHECK_HRESULT(ShowContentText());
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::Fill(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, Qorv::IAFS_Name* i_parent_folder,
                       bool i_keeps_selection) {
    TRACE_FUNCTION();
    const Selection selection = i_keeps_selection ? RememberSelection() : Selection{};
    if (!i_keeps_selection)
        m_rows.SetPattern({});
    m_rows.Load(i_file_system, i_items, i_parent_folder);
    CHECK_HRESULT(m_control->put_IsBusy(VARIANT_FALSE));
    CHECK_HRESULT(ShowRows(selection));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::Remove(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names) {
    TRACE_FUNCTION();
    const Selection selection = RememberSelection();
    m_rows.Remove(i_names);
    CHECK_HRESULT(ShowRows(selection));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::SetPattern(const std::wstring& i_pattern) {
    TRACE_FUNCTION();
    m_rows.SetPattern(i_pattern);
    CHECK_HRESULT(ShowRows({}));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::Refresh() {
    TRACE_FUNCTION();
    const Selection selection = RememberSelection();
    m_rows.SetPattern({});
    m_rows.Refilter();
    CHECK_HRESULT(ShowRows(selection));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::SortBy(LONG i_column) {
    TRACE_FUNCTION();
    const auto column = static_cast<FileColumn>(i_column);
    m_is_descending = column == m_sort_column && !m_is_descending;
    m_sort_column = column;
    const Selection selection = RememberSelection();
    m_rows.SortBy(m_sort_column, m_is_descending);
    CHECK_HRESULT(m_control->put_SortMark(i_column, m_is_descending ? VARIANT_TRUE : VARIANT_FALSE));
    CHECK_HRESULT(ShowRows(selection));
    return TRACE_RESULT(S_OK);
}

FileList::Selection FileList::RememberSelection() const {
    TRACE_FUNCTION();
    Selection selection;
    for (const FileRow* const row : GetSelection())
        selection.titles.push_back(row->title);
    m_control->GetNextSelected(no_row, &selection.first_row);
    LONG focused = no_row;
    m_control->get_FocusedRow(&focused);
    if (const FileRow* const row = GetRow(focused); row != nullptr && std::ranges::count(selection.titles, row->title))
        selection.focused = row->title;
    return selection;
}

/// Shows the rows as they are now, with the same ones selected as before.
HRESULT FileList::ShowRows(const Selection& i_selection) {
    TRACE_FUNCTION();
    m_naming.reset();
    const LONG count = static_cast<LONG>(m_rows.size());
    CHECK_HRESULT(m_control->put_RowCount(count));
    const std::unordered_set<std::wstring_view> titles(i_selection.titles.begin(), i_selection.titles.end());
    std::vector<LONG> selected;
    const bool begins_with_parent = count > 1 && GetRow(0)->is_parent;
    LONG focused = count > 0 ? LONG{begins_with_parent} : no_row;
    for (LONG row = 0; row < count; ++row) {
        const std::wstring& title = GetRow(row)->title;
        if (titles.contains(title))
            selected.push_back(row);
        if (!i_selection.focused.empty() && title == i_selection.focused)
            focused = row;
    }
    if (selected.empty() && i_selection.first_row != no_row)
        focused = std::min(i_selection.first_row, count - 1); // The selected rows are gone: focus their neighbour.
    if (selected.size() == m_rows.size() && count > 0)
        selected = {no_row}; // All at once; one by one would take long.
    for (const LONG row : selected)
        CHECK_HRESULT(m_control->SelectRow(row, VARIANT_TRUE));
    if (focused != no_row)
        CHECK_HRESULT(m_control->put_FocusedRow(focused));
    CHECK_HRESULT(ShowContentText());
    return TRACE_RESULT(S_OK);
}

/// Says beneath the rows, or the "../" row alone, why there are no others.
HRESULT FileList::ShowContentText() {
    TRACE_FUNCTION();
    std::wstring text;
    switch (m_rows.GetContent()) {
    case FileRows::Content::some:
        break;
    case FileRows::Content::no_folders:
        text = FormatString(m_host_instance, L"db.msg.noFolders");
        break;
    case FileRows::Content::none_of_type:
        text = m_rows.GetPattern().empty() ? FormatString(m_host_instance, L"db.msg.noneOfType")
                                           : FormatString(m_host_instance, L"db.msg.noneMatch", {m_rows.GetPattern()});
        break;
    case FileRows::Content::nothing:
        text = FormatString(m_host_instance, L"db.msg.emptyFolder");
        break;
    }
    CHECK_HRESULT(m_control->put_EmptyText(text.c_str()));
    return TRACE_RESULT(S_OK);
}

const FileRow* FileList::GetRow(LONG i_row) const noexcept {
    TRACE_FUNCTION();
    const auto index = static_cast<std::size_t>(i_row);
    return i_row >= 0 && index < m_rows.size() ? &m_rows[index] : nullptr;
}

std::vector<const FileRow*> FileList::GetSelection() const {
    TRACE_FUNCTION();
    std::vector<const FileRow*> selection;
    for (LONG row = no_row; SUCCEEDED(m_control->GetNextSelected(row, &row)) && row != no_row;)
        if (const FileRow* const selected = GetRow(row))
            selection.push_back(selected);
    return selection;
}

bool FileList::IsItemSelected() const {
    TRACE_FUNCTION();
    LONG row = no_row;
    while (SUCCEEDED(m_control->GetNextSelected(row, &row)) && row != no_row)
        if (const FileRow* const selected = GetRow(row); selected != nullptr && !selected->is_parent)
            return true;
    return false;
}

HRESULT FileList::SelectAll() {
    TRACE_FUNCTION();
    CHECK_HRESULT(m_control->SelectRow(no_row, VARIANT_TRUE));
    if (const FileRow* const first = GetRow(0); first != nullptr && first->is_parent)
        CHECK_HRESULT(m_control->SelectRow(0, VARIANT_FALSE));
    return TRACE_RESULT(S_OK);
}

bool FileList::Select(std::wstring_view i_title) {
    TRACE_FUNCTION();
    const auto index = m_rows.FindTitle(i_title);
    if (!index)
        return false;
    const LONG row = static_cast<LONG>(*index);
    return SUCCEEDED(m_control->SelectRow(no_row, VARIANT_FALSE)) &&
           SUCCEEDED(m_control->SelectRow(row, VARIANT_TRUE)) && SUCCEEDED(m_control->put_FocusedRow(row));
}

HRESULT FileList::BeginNewFolder(const std::wstring& i_title) {
    TRACE_FUNCTION();
    const LONG row = static_cast<LONG>(m_rows.size());
    CHECK_HRESULT(m_control->put_RowCount(row + 1));
    m_naming = Naming{row, i_title};
    CHECK_HRESULT(m_control->SelectRow(row, VARIANT_TRUE));
    CHECK_HRESULT(m_control->put_FocusedRow(row));
    CHECK_HRESULT(m_control->EditRow(row, whole_name));
    return TRACE_RESULT(S_OK);
}

HRESULT FileList::BeginRename(const std::wstring& i_title) {
    TRACE_FUNCTION();
    LONG row = no_row;
    CHECK_HRESULT(m_control->GetNextSelected(no_row, &row));
    const FileRow* const renamed = GetRow(row);
    CHECK_RETURN(renamed != nullptr, E_UNEXPECTED);
    m_naming = Naming{row, i_title};
    CHECK_HRESULT(m_control->EditRow(row, renamed->is_folder ? whole_name : StemLength(i_title)));
    return TRACE_RESULT(S_OK);
}

bool FileList::IsNamingNewFolder() const noexcept {
    TRACE_FUNCTION();
    return m_naming && static_cast<std::size_t>(m_naming->row) == m_rows.size();
}

std::optional<std::wstring> FileList::EndNaming() {
    TRACE_FUNCTION();
    if (!m_naming)
        return std::nullopt;
    Qorv::Bstr text;
    const bool is_named = m_control->get_EditedText(&text) == S_OK;
    ShowRows(RememberSelection());
    return is_named ? std::optional(std::wstring(text.View())) : std::nullopt;
}

HRESULT STDMETHODCALLTYPE FileList::GetCellText(LONG i_row, LONG i_column, BSTR* o_text) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_text != nullptr, E_POINTER);
        *o_text = nullptr;
        std::wstring text;
        if (m_naming && i_row == m_naming->row && i_column == static_cast<LONG>(FileColumn::name)) {
            text = m_naming->title;
        } else if (!IsNamingNewFolder() || i_row != m_naming->row) {
            const FileRow* const row = GetRow(i_row);
            CHECK_RETURN(row != nullptr, E_INVALIDARG);
            text = m_cell_text.Text(*row, static_cast<FileColumn>(i_column));
        }
        *o_text = Qorv::Bstr(text).Detach();
        CHECK_RETURN(*o_text, E_OUTOFMEMORY);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileList::GetRowImage(LONG i_row, Qorv::IUIX_Image** o_image) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_image != nullptr, E_POINTER);
    const FileRow* const row = GetRow(i_row);
    const bool is_parent = row != nullptr && row->is_parent;
    const bool is_folder = row == nullptr || row->is_folder;
    const auto& image = is_parent ? m_ui.m_up : is_folder ? m_ui.m_folder : m_ui.m_file;
    *o_image = Qorv::ComPtr(image).Detach();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileList::FindRow(Qorv::PCStr i_text, LONG i_first_row, LONG* o_row) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(i_text != nullptr, E_INVALIDARG);
        CHECK_RETURN(o_row != nullptr, E_POINTER);
        const auto found = m_rows.FindPrefix(i_text, static_cast<std::size_t>(std::max(i_first_row, 0L)));
        *o_row = found ? static_cast<LONG>(*found) : no_row;
        return TRACE_RESULT(S_OK);
    };
}

} // namespace Ui
