#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// A function's own qualified name ("Plugin::Setup"), cut at compile time from the signature that the compiler provides
/// ("virtual HRESULT Plugin::Setup(Qorv::IQorv_Inst*)").
class FunctionName {
public:
    constexpr explicit FunctionName(std::string_view i_signature) noexcept : m_name(Cut(i_signature)) {}

    /// The name for the log. The anonymous namespace is written `anonymous-namespace'.
    std::wstring Text() const;

    constexpr std::string_view View() const noexcept { return m_name; }

private:
    static constexpr std::string_view Cut(std::string_view i_signature) noexcept {
        std::string_view name = EnclosingFunction(WithoutTemplateArguments(i_signature));
        name = name.substr(0, ParameterList(name));
        return name.substr(NameStart(name));
    }

    /// Without a template's suffix " [with T = int]".
    static constexpr std::string_view WithoutTemplateArguments(std::string_view i_signature) noexcept {
        return i_signature.substr(0, i_signature.find(" [with "));
    }

    /// A lambda is logged as the function around it: "int Outer()::<lambda(int)>".
    static constexpr std::string_view EnclosingFunction(std::string_view i_signature) noexcept {
        return i_signature.substr(0, i_signature.find("::<lambda"));
    }

    /// Where the last list in parentheses, the parameters, begins.
    static constexpr std::size_t ParameterList(std::string_view i_signature) noexcept {
        int depth = 0;
        for (std::size_t i = i_signature.size(); i-- > 0;) {
            if (i_signature[i] == ')')
                ++depth;
            else if (i_signature[i] == '(' && --depth == 0)
                return i;
        }
        return i_signature.size();
    }

    /// After the last space outside brackets: everything before it is the result type.
    static constexpr std::size_t NameStart(std::string_view i_name) noexcept {
        int depth = 0;
        // An operator's own spaces and brackets ("operator bool", "operator->") are part of the name.
        for (std::size_t i = std::min(i_name.rfind("operator"), i_name.size()); i-- > 0;) {
            const char c = i_name[i];
            if (c == '>' || c == ')' || c == '}')
                ++depth;
            else if (c == '<' || c == '(' || c == '{')
                --depth;
            else if (c == ' ' && depth == 0)
                return i + 1;
        }
        return 0;
    }

    std::string_view m_name;
};
