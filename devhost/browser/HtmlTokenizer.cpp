#include "browser/HtmlTokenizer.h"

#include "browser/HtmlEntities.h"

#include <algorithm>
#include <array>

namespace DevHost {
namespace {

bool IsBlank(wchar_t i_character) {
    return i_character == L' ' || (i_character >= L'\t' && i_character <= L'\r');
}

bool IsLetter(wchar_t i_character) {
    return (i_character >= L'a' && i_character <= L'z') || (i_character >= L'A' && i_character <= L'Z');
}

/// Tags and attributes have ASCII names.
std::wstring ToLower(std::wstring_view i_text) {
    std::wstring lower(i_text);
    for (wchar_t& character : lower)
        if (character >= L'A' && character <= L'Z')
            character = static_cast<wchar_t>(character - L'A' + L'a');
    return lower;
}

class Tokenizer {
public:
    explicit Tokenizer(std::wstring_view i_document) : m_rest(i_document) {}

    std::vector<HtmlToken> Run() {
        while (!m_rest.empty())
            if (!TakeComment() && !TakeTag())
                TakeText();
        return std::move(m_tokens);
    }

private:
    wchar_t At(std::size_t i_index) const { return i_index < m_rest.size() ? m_rest[i_index] : L'\0'; }

    std::wstring_view Take(std::size_t i_length) {
        const std::wstring_view taken = m_rest.substr(0, i_length);
        m_rest.remove_prefix(taken.size());
        return taken;
    }

    template <typename Predicate>
    std::wstring_view TakeWhile(Predicate i_belongs) {
        const auto end = std::ranges::find_if_not(m_rest, i_belongs);
        return Take(static_cast<std::size_t>(end - m_rest.begin()));
    }

    /// Up to and including a mark; everything if there is no mark.
    void SkipPast(std::wstring_view i_mark) {
        const std::size_t found = m_rest.find(i_mark);
        Take(found == std::wstring_view::npos ? m_rest.size() : found + i_mark.size());
    }

    bool TakeComment() {
        if (At(0) != L'<' || (At(1) != L'!' && At(1) != L'?'))
            return false;
        SkipPast(m_rest.starts_with(L"<!--") ? L"-->" : L">");
        return true;
    }

    bool TakeTag() {
        const bool is_end = At(1) == L'/';
        if (At(0) != L'<' || !IsLetter(At(is_end ? 2 : 1)))
            return false;
        Take(is_end ? 2 : 1);
        HtmlToken tag{is_end ? HtmlToken::Kind::EndTag : HtmlToken::Kind::StartTag, {}, {}};
        tag.text = ToLower(TakeWhile([](wchar_t c) { return !IsBlank(c) && c != L'>' && c != L'/'; }));
        TakeAttributes(tag);
        const bool is_skipped = !is_end && (tag.text == L"script" || tag.text == L"style");
        if (is_skipped)
            SkipContent(tag.text);
        else
            m_tokens.push_back(std::move(tag));
        return true;
    }

    void TakeAttributes(HtmlToken& io_tag) {
        const auto is_between = [](wchar_t c) { return IsBlank(c) || c == L'/'; };
        for (TakeWhile(is_between); !m_rest.empty() && At(0) != L'>'; TakeWhile(is_between)) {
            std::wstring name(Take(1)); // A name may begin with any character, even "=".
            name += TakeWhile([](wchar_t c) { return !IsBlank(c) && c != L'=' && c != L'>' && c != L'/'; });
            TakeWhile(IsBlank);
            io_tag.attributes.emplace(ToLower(name), At(0) == L'=' ? TakeValue() : std::wstring());
        }
        Take(1);
    }

    std::wstring TakeValue() {
        Take(1);
        TakeWhile(IsBlank);
        const wchar_t quote = At(0);
        if (quote != L'"' && quote != L'\'')
            return ReplaceEntities(TakeWhile([](wchar_t c) { return !IsBlank(c) && c != L'>'; }));
        Take(1);
        const std::wstring_view value = TakeWhile([quote](wchar_t c) { return c != quote; });
        Take(1);
        return ReplaceEntities(value);
    }

    /// The content of these elements isn't HTML.
    void SkipContent(const std::wstring& i_name) {
        const std::wstring end_tag = L"</" + i_name;
        const auto found =
            std::search(m_rest.begin(), m_rest.end(), end_tag.begin(), end_tag.end(), [](wchar_t c, wchar_t lower) {
                return ToLower({&c, 1}).front() == lower;
            });
        Take(static_cast<std::size_t>(found - m_rest.begin()));
        SkipPast(L">");
    }

    void TakeText() {
        std::wstring text = ReplaceEntities(Take(std::max<std::size_t>(m_rest.find(L'<', 1), 1)));
        if (!m_tokens.empty() && m_tokens.back().kind == HtmlToken::Kind::Text)
            m_tokens.back().text += text;
        else
            m_tokens.push_back({HtmlToken::Kind::Text, std::move(text), {}});
    }

    std::wstring_view m_rest;
    std::vector<HtmlToken> m_tokens;
};

} // namespace

std::wstring HtmlToken::Attribute(const std::wstring& i_name) const {
    const auto found = attributes.find(i_name);
    return found != attributes.end() ? found->second : std::wstring();
}

std::vector<HtmlToken> TokenizeHtml(std::wstring_view i_document) {
    return Tokenizer(i_document).Run();
}

} // namespace DevHost
