#include "ui/list/FileRows.h"

#include "core/trace/Check.h"
#include "core/trace/LogText.h"
#include "core/trace/Text.h"
#include "qorv/Values.h"
#include "ui/list/NaturalOrder.h"
#include "ui/names/NameExtension.h"

#include <algorithm>
#include <map>
#include <set>

#include <shlwapi.h>

namespace Ui {
namespace {

constexpr wchar_t parent_title[] = L"../";

/// In capitals, so that it is shown and compared in one form.
std::wstring ExtensionOf(std::wstring_view i_title) {
    TRACE_FUNCTION();
    const std::wstring_view extension = WithoutDot(FindExtension(i_title).value_or(L""));
    std::wstring capitals(extension.size(), L'\0');
    const int length = static_cast<int>(extension.size());
    if (!capitals.empty() && LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, extension.data(), length,
                                           capitals.data(), length, nullptr, nullptr, 0) == 0)
        capitals = extension;
    return capitals;
}

HRESULT ReadInformation(Qorv::IAFS_FileSys* i_file_system, FileRow& io_row) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_FileInfo> information;
    CHECK_HRESULT(i_file_system->GetFileInfo(io_row.name, nullptr, nullptr, &information));
    Qorv::Bstr title;
    CHECK_HRESULT(information->get_Title(&title));
    ULONG attributes = 0;
    CHECK_HRESULT(information->get_Attributes(&attributes));
    io_row.title = title.View();
    io_row.is_folder = (attributes & Qorv::AFS_Attribute_Folder) != 0;
    if (!io_row.is_folder) {
        CHECK_HRESULT(information->get_Size(&io_row.size));
        io_row.extension = ExtensionOf(io_row.title);
    }
    CHECK_HRESULT(information->get_LastWriteTime(&io_row.modified));
    io_row.sort_key = NaturalSortKey(io_row.title);
    return TRACE_RESULT(S_OK);
}

std::wstring ReadError(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name, HRESULT i_result) {
    TRACE_FUNCTION();
    Qorv::Bstr text;
    i_file_system->NameToString(i_name, 0, nullptr, &text);
    return FormatLogText(L"ERROR: reading the information of '%ls' failed with result %d - leaving it out",
                         std::wstring(text.View()).c_str(), static_cast<int>(i_result));
}

FileRow ParentRow(Qorv::IAFS_Name* i_parent_folder) {
    TRACE_FUNCTION();
    FileRow row;
    row.title = parent_title;
    row.is_folder = true;
    row.is_parent = true;
    row.name = i_parent_folder;
    return row;
}

/// The rank of each row's extension among all of them.
std::vector<ULONGLONG> KindRanks(const std::vector<FileRow>& i_rows) {
    TRACE_FUNCTION();
    std::map<std::wstring_view, ULONGLONG> ranks;
    for (const FileRow& row : i_rows)
        ranks.try_emplace(row.extension, 0);
    ULONGLONG next_rank = 0;
    for (auto& [extension, rank] : ranks)
        rank = next_rank++;
    std::vector<ULONGLONG> values;
    values.reserve(i_rows.size());
    for (const FileRow& row : i_rows)
        values.push_back(ranks[row.extension]);
    return values;
}

/// The parent folder, the folders, the files.
int GroupOf(const FileRow& i_row) noexcept {
    TRACE_FUNCTION();
    return i_row.is_parent ? 0 : i_row.is_folder ? 1 : 2;
}

} // namespace

void FileRows::Load(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, Qorv::IAFS_Name* i_parent_folder) {
    TRACE_FUNCTION();
    Clear();
    m_rows.reserve(i_items.size() + 1);
    if (i_parent_folder != nullptr)
        m_rows.push_back(ParentRow(i_parent_folder));
    for (const auto& [name, item] : i_items) {
        FileRow row;
        row.name = name;
        row.item = item;
        if (const HRESULT result = ReadInformation(i_file_system, row); FAILED(result))
            TRACE_TEXT(ReadError(i_file_system, name, result));
        else
            m_rows.push_back(std::move(row));
    }
    std::ranges::sort(m_rows, {}, &FileRow::sort_key);
    Show();
}

void FileRows::Remove(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names) {
    TRACE_FUNCTION();
    const std::set<Qorv::ComPtr<Qorv::IAFS_Name>> names(i_names.begin(), i_names.end());
    std::erase_if(m_rows, [&](const FileRow& i_row) { return !i_row.is_parent && names.contains(i_row.name); });
    Show();
}

void FileRows::Clear() noexcept {
    TRACE_FUNCTION();
    m_shown.clear();
    m_rows.clear();
}

void FileRows::SetFilter(std::shared_ptr<NamesFilter> i_filter, bool i_is_folders_only) {
    TRACE_FUNCTION();
    m_filter = std::move(i_filter);
    m_is_folders_only = i_is_folders_only;
    Show();
}

void FileRows::SetPattern(std::wstring i_pattern) {
    TRACE_FUNCTION();
    m_pattern = std::move(i_pattern);
    Show();
}

void FileRows::Refilter() {
    TRACE_FUNCTION();
    Show();
}

void FileRows::SortBy(FileColumn i_column, bool i_is_descending) {
    TRACE_FUNCTION();
    m_column = i_column;
    m_is_descending = i_is_descending;
    Order();
}

bool FileRows::IsShown(const FileRow& i_row) const {
    TRACE_FUNCTION();
    if (i_row.is_folder)
        return true;
    if (m_is_folders_only)
        return false;
    if (!m_pattern.empty()) // It takes the place of the file types.
        return PathMatchSpecW(i_row.title.c_str(), m_pattern.c_str()) != FALSE;
    return m_filter == nullptr || m_filter->IsValid(i_row.name);
}

void FileRows::Show() {
    TRACE_FUNCTION();
    m_shown.clear();
    for (RowIndex i = 0; i < m_rows.size(); ++i) {
        if (IsShown(m_rows[i]))
            m_shown.push_back(i);
    }
    Order();
}

std::vector<ULONGLONG> FileRows::SortValues() const {
    TRACE_FUNCTION();
    if (m_column == FileColumn::kind)
        return KindRanks(m_rows);
    std::vector<ULONGLONG> values;
    values.reserve(m_rows.size());
    for (const FileRow& row : m_rows)
        values.push_back(m_column == FileColumn::size   ? row.size
                         : m_column == FileColumn::date ? row.modified
                                                        : values.size());
    return values;
}

void FileRows::Order() {
    TRACE_FUNCTION();
    const std::vector<ULONGLONG> values = SortValues();
    std::ranges::sort(m_shown, [&](RowIndex i_left, RowIndex i_right) {
        const int left_group = GroupOf(m_rows[i_left]);
        const int right_group = GroupOf(m_rows[i_right]);
        if (left_group != right_group)
            return left_group < right_group;
        if (values[i_left] != values[i_right])
            return (values[i_left] < values[i_right]) != m_is_descending;
        return i_left < i_right; // By name.
    });
}

FileRows::Content FileRows::GetContent() const noexcept {
    TRACE_FUNCTION();
    const auto is_item = [](const FileRow& i_row) { return !i_row.is_parent; };
    if (std::ranges::any_of(m_shown, [&](RowIndex i_row) { return is_item(m_rows[i_row]); }))
        return Content::some;
    if (std::ranges::none_of(m_rows, is_item))
        return Content::nothing;
    return m_is_folders_only ? Content::no_folders : Content::none_of_type;
}

std::optional<std::size_t> FileRows::FindTitle(std::wstring_view i_title) const {
    TRACE_FUNCTION();
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < size(); ++i) {
        const FileRow& row = (*this)[i];
        if (row.is_parent)
            continue;
        if (row.title == i_title)
            return i;
        if (!found && IsSameName(row.title, i_title))
            found = i;
    }
    return found;
}

std::optional<std::size_t> FileRows::FindPrefix(std::wstring_view i_prefix, std::size_t i_first_row) const {
    TRACE_FUNCTION();
    if (i_prefix.empty())
        return std::nullopt;
    for (std::size_t i = 0; i < size(); ++i) {
        const std::size_t index = (i_first_row + i) % size();
        const FileRow& row = (*this)[index];
        if (!row.is_parent && EqualsNoCase(std::wstring_view(row.title).substr(0, i_prefix.size()), i_prefix))
            return index;
    }
    return std::nullopt;
}

} // namespace Ui
