#include "ui/names/FilesExtensionFilter.h"

#include "core/trace/Check.h"
#include "core/trace/LogText.h"
#include "core/trace/Text.h"
#include "qorv/Values.h"
#include "ui/names/NameExtension.h"

#include <algorithm>
#include <memory>

namespace {

bool Contains(const Ui::FilterExtensions& i_extensions, std::wstring_view i_extension) {
    TRACE_FUNCTION();
    return std::ranges::any_of(i_extensions,
                               [&](const std::wstring& i_entry) { return EqualsNoCase(i_entry, i_extension); });
}

bool IsAllFiles(const Ui::FilterExtensions& i_extensions) {
    TRACE_FUNCTION();
    return i_extensions.size() == 1 && i_extensions.front() == Ui::all_files_extension;
}

} // namespace

FilesExtensionFilter::FilesExtensionFilter(Qorv::IAFS_FileSys* i_file_system, Qorv::IUIX_Combo* i_combo)
    : m_file_system(i_file_system), m_combo(i_combo) {
    TRACE_FUNCTION();
}

FilesExtensionFilter::~FilesExtensionFilter() {
    TRACE_FUNCTION();
    Clear();
}

HRESULT FilesExtensionFilter::SetFilter(std::wstring_view i_filters) {
    TRACE_FUNCTION();
    CHECK_HRESULT(Clear());
    for (const Ui::FilterEntry& entry : Ui::ParseFilterString(i_filters))
        CHECK_HRESULT(Insert(entry));
    LONG n = 0;
    CHECK_HRESULT(m_combo->get_Count(&n));
    if (n > 0)
        CHECK_HRESULT(m_combo->put_SelItem(0));
    return TRACE_RESULT(S_OK);
}

HRESULT FilesExtensionFilter::Insert(const Ui::FilterEntry& i_entry) {
    TRACE_FUNCTION();
    const wchar_t* const text = i_entry.text.c_str();
    auto item = std::make_unique<Ui::FilterExtensions>(i_entry.extensions);
    std::unique_ptr<Ui::FilterExtensions> keeper(item.get()); // Frees the list if the combo does not take it.
    CHECK_HRESULT(m_combo->InsertItem(-1, text, text, nullptr, reinterpret_cast<Qorv::PARAM_T>(item.release()), 0));
    static_cast<void>(keeper.release()); // Now the combo's item owns it.
    return TRACE_RESULT(S_OK);
}

HRESULT FilesExtensionFilter::Clear() {
    TRACE_FUNCTION();
    LONG n = 0;
    CHECK_HRESULT(m_combo->get_Count(&n));
    std::vector<Ui::FilterExtensions*> items;
    for (LONG i = 0; i < n; ++i) {
        Ui::FilterExtensions* item = nullptr;
        CHECK_HRESULT(m_combo->GetItemParam(i, (Qorv::PARAM_T*)&item));
        items.push_back(item);
    }
    CHECK_HRESULT(m_combo->Clear());
    for (const Ui::FilterExtensions* const item : items) // Only now: no item of the combo may point to a deleted list.
        delete item;
    return TRACE_RESULT(S_OK);
}

Ui::FilterExtensions* FilesExtensionFilter::ItemExtensions(LONG i_index) {
    TRACE_FUNCTION();
    Ui::FilterExtensions* item = nullptr;
    return SUCCEEDED(m_combo->GetItemParam(i_index, (Qorv::PARAM_T*)&item)) ? item : nullptr;
}

LONG FilesExtensionFilter::SelectedIndex() {
    TRACE_FUNCTION();
    LONG index = -1;
    return SUCCEEDED(m_combo->get_SelItem(&index)) ? index : -1;
}

Ui::FilterExtensions* FilesExtensionFilter::SelectedExtensions() {
    TRACE_FUNCTION();
    const LONG index = SelectedIndex();
    return index >= 0 ? ItemExtensions(index) : nullptr;
}

bool FilesExtensionFilter::IsValid(Qorv::IAFS_Name* i_name) {
    TRACE_FUNCTION();
    const Ui::FilterExtensions* const extensions = SelectedExtensions();
    if (extensions == nullptr || IsAllFiles(*extensions))
        return true;
    Qorv::Bstr text;
    if (FAILED(m_file_system->NameToString(i_name, Qorv::AFS_Name2String_ForDisplay, nullptr, &text)))
        return false;
    const std::wstring_view extension = Ui::WithoutDot(Ui::FindExtension(text.View()).value_or(L""));
    return !extension.empty() && Contains(*extensions, extension);
}

void FilesExtensionFilter::AddFilterExtension(std::wstring& io_name, std::wstring_view default_ext) {
    TRACE_FUNCTION();
    const Ui::FilterExtensions* const extensions = SelectedExtensions();
    const bool has_filter_extension = extensions != nullptr && !extensions->empty() && !IsAllFiles(*extensions);
    const std::wstring first = has_filter_extension ? extensions->front() : std::wstring();
    const auto found = Ui::FindExtension(io_name);
    if (!found) {
        if (has_filter_extension) {
            TRACE_TEXT(FormatLogText(L"INFORMATION: Name has no extension - adding first extension from filter '%ls'",
                                     first.c_str()));
            Ui::AddExtension(io_name, first, trace_function.Name());
        } else if (!default_ext.empty()) {
            TRACE_TEXT(FormatLogText(
                L"INFORMATION: Name has no extension, no filter extension found - adding default one '%ls'",
                std::wstring(default_ext).c_str()));
            Ui::AddExtension(io_name, default_ext, trace_function.Name());
        } else {
            TRACE_TEXT(L"INFORMATION: Name has no extension, no filter extension found, no default extension - adding "
                       L"nothing");
        }
        return;
    }
    // A name without a dot has the empty extension, which no filter knows: "letter" becomes "letter.pdf" below.
    if (!has_filter_extension) {
        TRACE_TEXT(L"INFORMATION: Name has extension, no filter extension found - adding nothing");
        return;
    }
    const std::wstring extension(Ui::WithoutDot(*found));
    if (Contains(*extensions, extension)) {
        TRACE_TEXT(L"INFORMATION: Name has extension, it's in current filter extensions - adding nothing");
        return;
    }
    if (IsInOtherItem(extension, trace_function.Name())) {
        TRACE_TEXT(FormatLogText(L"INFORMATION: Name has extension, it's in known filters list - change extension from "
                                 L"'%ls' to first extension from filter '%ls'",
                                 extension.c_str(), first.c_str()));
        io_name.resize(io_name.size() - extension.size()); // The dot stays.
    } else {
        TRACE_TEXT(FormatLogText(L"INFORMATION: Name has extension, it's not in known filter extensions - adding first "
                                 L"extension from filter '%ls'",
                                 first.c_str()));
    }
    Ui::AddExtension(io_name, first, trace_function.Name());
}

bool FilesExtensionFilter::IsInOtherItem(std::wstring_view i_extension, const FunctionName& i_caller) {
    TRACE_FUNCTION();
    LONG n = 0;
    if (FAILED(m_combo->get_Count(&n)))
        return false;
    const LONG selected = SelectedIndex();
    for (LONG i = 0; i < n; ++i) {
        if (i == selected)
            continue;
        const Ui::FilterExtensions* const extensions = ItemExtensions(i);
        if (extensions == nullptr) {
            if (IsLogEnabled())
                TraceText(i_caller, FormatLogText(L"WARNING: Failed to get %i-th filters list item - skipping check",
                                                  static_cast<int>(i)));
        } else if (Contains(*extensions, i_extension)) {
            return true;
        }
    }
    return false;
}
