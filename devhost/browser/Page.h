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
    std::wstring text;          ///< The displayed text: a field's initial value, a button's caption.
    std::wstring name;          ///< The name under which a form sends it; without one it isn't sent.
    std::wstring value;         ///< The value that a button or a hidden field sends.
    std::wstring url;           ///< A link's target, as written.
    std::size_t form = no_form; ///< The form it belongs to.
};

struct PageForm {
    std::wstring action; ///< As written; empty for the page itself.
    bool is_post = false;
};

/// What a page shows, from top to bottom.
struct Page {
    /// Reads HTML. Any text is a page.
    static Page FromHtml(std::wstring_view i_document);

    /// A page of plain text, line by line.
    static Page FromText(std::wstring_view i_text);

    std::wstring title;
    std::vector<PageBlock> blocks;
    std::vector<PageForm> forms;
};

} // namespace DevHost
