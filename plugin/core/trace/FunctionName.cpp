#include "core/trace/FunctionName.h"

std::wstring FunctionName::Text() const {
    // The compilers' names for the anonymous namespace.
    static constexpr std::string_view placeholders[] = {"{anonymous}", "(anonymous namespace)"};
    static constexpr std::string_view log_name = "`anonymous-namespace'";

    std::string name(m_name);
    for (const std::string_view placeholder : placeholders)
        for (std::size_t at; (at = name.find(placeholder)) != std::string::npos;)
            name.replace(at, placeholder.size(), log_name);
    return {name.begin(), name.end()}; // Identifiers are ASCII.
}
