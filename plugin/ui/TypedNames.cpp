#include "ui/TypedNames.h"

#include "afs/LogText.h"
#include "core/Check.h"
#include "core/Text.h"
#include "qorv/Values.h"

#include <algorithm>

namespace {

HRESULT TitleOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name, Qorv::Bstr& o_title) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_FileInfo> information;
    CHECK_HRESULT(i_file_system->GetFileInfo(i_name, nullptr, nullptr, &information));
    CHECK_HRESULT(information->get_Title(&o_title));
    return TRACE_RESULT(S_OK);
}

std::wstring TitleError(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name, HRESULT i_result) {
    TRACE_FUNCTION();
    Qorv::Bstr text;
    i_file_system->NameToString(i_name, 0, nullptr, &text);
    return FormatLogText(L"ERROR: get_Title failed for '%ls' with result %d", std::wstring(text.View()).c_str(),
                         static_cast<int>(i_result));
}

} // namespace

void MatchTypedNames(Qorv::IAFS_FileSys* i_file_system, const FolderItems& i_items, std::vector<TypedName>& io_names,
                     const FunctionName& i_caller) {
    TRACE_FUNCTION();
    std::size_t left = io_names.size();
    for (auto item = i_items.begin(); item != i_items.end() && left > 0; ++item) {
        Qorv::Bstr title;
        if (const HRESULT result = TitleOf(i_file_system, item->first, title); FAILED(result)) {
            if (IsLogEnabled())
                TraceText(i_caller, TitleError(i_file_system, item->first, result));
            continue;
        }
        const auto match = std::ranges::find_if(io_names, [&](const TypedName& i_typed) {
            return i_typed.name == nullptr && EqualsNoCase(i_typed.text, title.View());
        });
        if (match == io_names.end())
            continue;
        match->name = item->first;
        match->item = item->second;
        --left;
    }
}
