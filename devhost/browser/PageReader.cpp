#include "browser/PageReader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace DevHost {
namespace {

using Kind = PageBlock::Kind;

// No page needs more, and each takes a window.
constexpr std::size_t max_blocks = 400;

constexpr std::array<std::wstring_view, 6> headings = {L"h1", L"h2", L"h3", L"h4", L"h5", L"h6"};

// What begins and ends a paragraph.
constexpr std::array<std::wstring_view, 24> block_tags = {
    L"p",      L"div", L"section",    L"article", L"main",     L"header", L"footer", L"nav",
    L"ul",     L"ol",  L"dl",         L"dt",      L"dd",       L"form",   L"table",  L"tr",
    L"legend", L"hr",  L"blockquote", L"pre",     L"fieldset", L"center", L"body",   L"address"};

template <std::size_t Size>
bool IsOneOf(const std::array<std::wstring_view, Size>& i_names, std::wstring_view i_name) {
    return std::ranges::find(i_names, i_name) != i_names.end();
}

/// Words separated by single spaces: a document's line breaks and indentation mean nothing.
void AppendCollapsed(std::wstring& io_text, const std::wstring& i_added) {
    for (const wchar_t character : i_added) {
        const bool is_blank = character == L' ' || (character >= L'\t' && character <= L'\r');
        if (!is_blank)
            io_text += character;
        else if (!io_text.empty() && io_text.back() != L' ' && io_text.back() != L'\n')
            io_text += L' ';
    }
}

void TrimEnd(std::wstring& io_text) {
    io_text.erase(io_text.find_last_not_of(L" \n") + 1);
}

std::wstring Lower(std::wstring i_text) {
    for (wchar_t& character : i_text)
        if (character >= L'A' && character <= L'Z')
            character = static_cast<wchar_t>(character - L'A' + L'a');
    return i_text;
}

} // namespace

void PageReader::Add(const HtmlToken& i_token) {
    switch (i_token.kind) {
    case HtmlToken::Kind::Text:
        return AddText(i_token.text);
    case HtmlToken::Kind::StartTag:
        return Start(i_token);
    case HtmlToken::Kind::EndTag:
        return End(i_token.text);
    }
}

Page PageReader::Finish() {
    Flush();
    TrimEnd(m_page.title);
    return std::move(m_page);
}

void PageReader::AddText(const std::wstring& i_text) {
    AppendCollapsed(m_is_title ? m_page.title : m_current.text, i_text);
}

void PageReader::Start(const HtmlToken& i_tag) {
    const std::wstring& name = i_tag.text;
    m_is_title = name == L"title";
    if (name == L"a" && i_tag.HasAttribute(L"href")) {
        StartBlock(Kind::Link);
        m_current.url = i_tag.Attribute(L"href");
    } else if (name == L"br") {
        TrimEnd(m_current.text);
        m_current.text += m_current.text.empty() ? L"" : L"\n";
    } else if (name == L"li") {
        StartBlock(Kind::ListItem);
        m_current.text = L"\u2022 ";
    } else if (name == L"label") {
        StartBlock(Kind::Label);
    } else if (name == L"button") {
        StartButton(i_tag);
    } else if (name == L"input") {
        AddInput(i_tag);
    } else if (IsOneOf(headings, name)) {
        StartBlock(Kind::Heading);
    } else if (IsOneOf(block_tags, name)) {
        StartBlock(Kind::Paragraph);
        if (name == L"form")
            StartForm(i_tag);
    }
}

void PageReader::End(const std::wstring& i_name) {
    if (i_name == L"title")
        m_is_title = false;
    else if (i_name == L"a" || i_name == L"label" || i_name == L"button" || i_name == L"li" ||
             IsOneOf(headings, i_name) || IsOneOf(block_tags, i_name))
        Flush();
    if (i_name == L"form")
        m_form = PageBlock::no_form;
}

void PageReader::StartBlock(Kind i_kind) {
    Flush();
    m_current = NewBlock(i_kind);
}

void PageReader::StartForm(const HtmlToken& i_tag) {
    m_form = m_page.forms.size();
    m_page.forms.push_back({i_tag.Attribute(L"action"), Lower(i_tag.Attribute(L"method")) == L"post"});
}

void PageReader::StartButton(const HtmlToken& i_tag) {
    const std::wstring type = Lower(i_tag.Attribute(L"type"));
    Flush();
    // Other types do nothing without scripts.
    if (type.empty() || type == L"submit")
        m_current = NewBlock(Kind::Button, i_tag);
}

void PageReader::AddInput(const HtmlToken& i_tag) {
    constexpr std::array<std::wstring_view, 3> choices = {L"checkbox", L"radio", L"image"};
    constexpr std::array<std::wstring_view, 3> useless = {L"button", L"reset", L"file"};
    const std::wstring type = Lower(i_tag.Attribute(L"type"));
    if (type != L"hidden")
        Flush();
    if (IsOneOf(useless, type))
        return;
    PageBlock block = NewBlock(Kind::Field, i_tag);
    if (type == L"hidden") {
        block.kind = Kind::Hidden;
    } else if (type == L"submit") {
        block.kind = Kind::Button;
        block.text = block.value.empty() ? L"Submit" : block.value;
    } else if (IsOneOf(choices, type)) {
        // Choices keep the page's initial values.
        if (!i_tag.HasAttribute(L"checked"))
            return;
        block.kind = Kind::Hidden;
        block.value = i_tag.HasAttribute(L"value") ? block.value : L"on";
    } else {
        block.kind = type == L"password" ? Kind::Password : Kind::Field;
        block.text = block.value;
    }
    if (m_page.blocks.size() < max_blocks)
        m_page.blocks.push_back(std::move(block));
}

PageBlock PageReader::NewBlock(Kind i_kind) const {
    PageBlock block;
    block.kind = i_kind;
    block.form = m_form;
    return block;
}

PageBlock PageReader::NewBlock(Kind i_kind, const HtmlToken& i_tag) const {
    PageBlock block = NewBlock(i_kind);
    block.name = i_tag.Attribute(L"name");
    block.value = i_tag.Attribute(L"value");
    return block;
}

void PageReader::Flush() {
    TrimEnd(m_current.text);
    if (!m_current.text.empty() && m_page.blocks.size() < max_blocks)
        m_page.blocks.push_back(std::move(m_current));
    m_current = NewBlock(Kind::Paragraph);
}

} // namespace DevHost
