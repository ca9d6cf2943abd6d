#include "browser/Page.h"

#include "browser/PageReader.h"

namespace DevHost {

Page Page::FromHtml(std::wstring_view i_document) {
    PageReader reader;
    for (const HtmlToken& token : TokenizeHtml(i_document))
        reader.Add(token);
    return reader.Finish();
}

Page Page::FromText(std::wstring_view i_text) {
    Page page;
    PageBlock block;
    block.text = i_text;
    page.blocks.push_back(std::move(block));
    return page;
}

} // namespace DevHost
