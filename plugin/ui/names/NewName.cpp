#include "ui/names/NewName.h"

#include "afs/Location.h"
#include "afs/Name.h"
#include "core/trace/Trace.h"
#include "dropbox/NameRules.h"

#include <cwctype>

namespace Ui {
namespace {

constexpr std::size_t longest_name = 255; // UTF-16 units.

bool CanBeLocated(std::wstring_view i_name) {
    TRACE_FUNCTION();
    return Name::IsStringValid(std::wstring(location_prefix).append(L"/").append(i_name));
}

/// Each one once, with spaces between them.
std::wstring RefusedCharacters(std::wstring_view i_name) {
    TRACE_FUNCTION();
    constexpr std::wstring_view refused = L"/\\:*?\"<>|";
    std::wstring found;
    for (const wchar_t character : i_name)
        if (refused.find(character) != std::wstring_view::npos && found.find(character) == std::wstring::npos)
            found += (found.empty() ? std::wstring() : L" ") + character;
    return found;
}

} // namespace

std::optional<NameFault> FaultOfNewName(std::wstring_view i_name) {
    TRACE_FUNCTION();
    if (Dropbox::TakesName(i_name) && CanBeLocated(i_name))
        return std::nullopt;
    if (std::wstring characters = RefusedCharacters(i_name); !characters.empty())
        return NameFault{L"db.msg.nameCharacters", std::move(characters)};
    if (i_name.size() > longest_name)
        return NameFault{L"db.msg.nameTooLong"};
    if (!i_name.empty() && std::iswspace(i_name.back()) != 0)
        return NameFault{L"db.msg.nameEnd"};
    // What helps a name that breaks no other rule is any other name: it is a program's own.
    if (!i_name.empty() && Dropbox::TakesName(L'x' + std::wstring(i_name)))
        return NameFault{L"db.msg.nameReserved"};
    return NameFault{L"db.msg.badName"};
}

} // namespace Ui
