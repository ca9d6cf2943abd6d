#pragma once

#include "browser/HtmlTokenizer.h"
#include "browser/Page.h"

namespace DevHost {

/// Builds a page from the pieces of an HTML document, one by one.
class PageReader {
public:
    void Add(const HtmlToken& i_token);
    Page Finish();

private:
    void AddText(const std::wstring& i_text);
    void Start(const HtmlToken& i_tag);
    void End(const std::wstring& i_name);
    void StartBlock(PageBlock::Kind i_kind);
    void StartForm(const HtmlToken& i_tag);
    void StartButton(const HtmlToken& i_tag);
    void AddInput(const HtmlToken& i_tag);
    PageBlock NewBlock(PageBlock::Kind i_kind) const;
    PageBlock NewBlock(PageBlock::Kind i_kind, const HtmlToken& i_tag) const;
    /// Adds the current block to the page if it has text, and begins a paragraph.
    void Flush();

    Page m_page;
    PageBlock m_current;     ///< The block that texts are added to.
    bool m_is_title = false; ///< Texts belong to the title.
    std::size_t m_form = PageBlock::no_form;
};

} // namespace DevHost
