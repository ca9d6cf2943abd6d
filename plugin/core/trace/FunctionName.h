#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// A function's own qualified name ("Plugin::Setup"), cut at compile time out of the text that the compiler gives for
/// it ("virtual HRESULT Plugin::Setup(Qorv::IQorv_Inst*)").
class FunctionName {
public:
    constexpr explicit FunctionName(std::string_view i_signature) noexcept : m_name(Cut(i_signature)) {}

    /// The name for the log; the anonymous namespace is written `anonymous-namespace'.
    std::wstring Text() const;

    constexpr std::string_view View() const noexcept { return m_name; }

private:
    static constexpr std::string_view Cut(std::string_view i_signature) noexcept {
        std::string_view name = EnclosingFunction(WithoutTemplateArguments(i_signature));
        name = name.substr(0, ParameterList(name));
        return name.substr(NameStart(name));
    }

    /// Without the tail " [with T = int]" of a template.
    static constexpr std::string_view WithoutTemplateArguments(std::string_view i_signature) noexcept {
        return i_signature.substr(0, i_signature.find(" [with "));
    }

    /// A lambda is logged as the function that it stands in: "int Outer()::<lambda(int)>".
    static constexpr std::string_view EnclosingFunction(std::string_view i_signature) noexcept {
        return i_signature.substr(0, i_signature.find("::<lambda"));
    }

    /// Where the last parenthesised list begins, which is the parameters.
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

    /// Behind the last blank that stands outside of brackets: what is before it is the result type.
    static constexpr std::size_t NameStart(std::string_view i_name) noexcept {
        int depth = 0;
        // An operator's own blanks and brackets ("operator bool", "operator->") are part of the name.
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
