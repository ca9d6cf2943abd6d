#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Ui {

/// Why the service takes no new file or folder of a name: one rule, in words.
struct NameFault {
    const wchar_t* message_id = nullptr; ///< Of the localized text; "%1" in it is the name, "%2" the characters.
    std::wstring characters{};           ///< Those that a name can't have.
};

/// Nothing for a name that the service takes. The first rule that is broken counts.
std::optional<NameFault> FaultOfNewName(std::wstring_view i_name);

} // namespace Ui
