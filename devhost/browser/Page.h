#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace DevHost {

/// One thing on a page.
struct PageBlock {
    enum class Kind { Heading, Paragraph, ListItem, Link, Label, Field, Password, Button, Hidden };
    static constexpr std::size_t no_form = static_cast<std::size_t>(-1);

    Kind kind = Kind::Paragraph;
    std::wstring text;          ///< What is shown: of a field what it holds at first, of a button its caption.
    std::wstring name;          ///< Of what a form sends; without a name it is not sent.
    std::wstring value;         ///< What a button and a hidden field send.
    std::wstring url;           ///< Where a link leads, as it is written.
    std::size_t form = no_form; ///< Which form it belongs to.
};

struct PageForm {
    std::wstring action; ///< As it is written; empty for the page itself.
    bool is_post = false;
};

/// What a page shows, from the top to the bottom.
struct Page {
    /// Reads HTML. Any text is a page.
    static Page FromHtml(std::wstring_view i_document);

    /// A text shown as it is, line by line.
    static Page FromText(std::wstring_view i_text);

    std::wstring title;
    std::vector<PageBlock> blocks;
    std::vector<PageForm> forms;
};

} // namespace DevHost
