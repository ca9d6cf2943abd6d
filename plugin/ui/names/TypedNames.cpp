#include "ui/names/TypedNames.h"

#include "core/trace/Check.h"
#include "core/trace/LogText.h"
#include "core/trace/Text.h"
#include "qorv/Values.h"

#include <unordered_map>

namespace Ui {
namespace {

/// An item of the folder that may be what somebody typed.
struct Candidate {
    std::wstring title;
    bool is_folder = false;
    FolderItems::const_iterator item{};
    bool is_taken = false;
};

/// By the keys of their titles: a folder and a list of names may both be long.
using Candidates = std::unordered_map<std::wstring, std::vector<Candidate>>;

HRESULT ReadItem(Qorv::IAFS_FileSys* i_file_system, FolderItems::const_iterator i_item, Candidate& o_candidate) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_FileInfo> information;
    CHECK_HRESULT(i_file_system->GetFileInfo(i_item->first, nullptr, nullptr, &information));
    Qorv::Bstr title;
    CHECK_HRESULT(information->get_Title(&title));
    ULONG attributes = 0;
    CHECK_HRESULT(information->get_Attributes(&attributes));
    o_candidate = {std::wstring(title.View()), (attributes & Qorv::AFS_Attribute_Folder) != 0, i_item};
    return TRACE_RESULT(S_OK);
}

std::wstring TitleError(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name, HRESULT i_result) {
    TRACE_FUNCTION();
    Qorv::Bstr text;
    i_file_system->NameToString(i_name, 0, nullptr, &text);
    return FormatLogText(L"ERROR: get_Title failed for '%ls' with result %d", std::wstring(text.View()).c_str(),
                         static_cast<int>(i_result));
}

/// A key for looking titles up: titles that are the same name (`IsSameName`) have equal keys.
std::wstring TitleKey(std::wstring_view i_title) {
    TRACE_FUNCTION();
    std::wstring key(i_title.size(), L'\0');
    const int length = static_cast<int>(i_title.size());
    if (length > 0 && LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, i_title.data(), length, key.data(), length,
                                    nullptr, nullptr, 0) != length)
        key = i_title;
    return key;
}

Candidates ReadCandidates(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, const FunctionName& i_caller) {
    TRACE_FUNCTION();
    Candidates candidates;
    for (auto item = i_items.begin(); item != i_items.end(); ++item) {
        Candidate candidate;
        if (const HRESULT result = ReadItem(i_file_system, item, candidate); SUCCEEDED(result))
            candidates[TitleKey(candidate.title)].push_back(std::move(candidate));
        else if (IsLogEnabled())
            TraceText(i_caller, TitleError(i_file_system, item->first, result));
    }
    return candidates;
}

/// Of the items not matched yet, the one with exactly this title, otherwise one that differs only in case; null if
/// there is none.
Candidate* Find(std::vector<Candidate>& io_candidates, std::wstring_view i_text) {
    TRACE_FUNCTION();
    Candidate* found = nullptr;
    for (Candidate& candidate : io_candidates)
        if (!candidate.is_taken && (found == nullptr || candidate.title == i_text))
            found = &candidate;
    return found;
}

} // namespace

void MatchTypedNames(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, std::vector<TypedName>& io_names,
                     const FunctionName& i_caller) {
    TRACE_FUNCTION();
    if (io_names.empty())
        return;
    Candidates candidates = ReadCandidates(i_file_system, i_items, i_caller);
    for (TypedName& typed : io_names) {
        const auto same_ones = candidates.find(TitleKey(typed.text));
        Candidate* const match = same_ones != candidates.end() ? Find(same_ones->second, typed.text) : nullptr;
        if (match == nullptr)
            continue;
        match->is_taken = true;
        typed.name = match->item->first;
        typed.item = match->item->second;
        typed.is_folder = match->is_folder;
    }
}

} // namespace Ui
