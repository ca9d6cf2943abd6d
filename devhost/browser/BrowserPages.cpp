#include "browser/BrowserPages.h"

#include "base/Failure.h"
#include "base/Unicode.h"
#include "browser/Url.h"

namespace DevHost {
namespace {

using Kind = PageBlock::Kind;

PageBlock Block(Kind i_kind, std::wstring i_text) {
    PageBlock block;
    block.kind = i_kind;
    block.text = std::move(i_text);
    return block;
}

Page Notice(const std::wstring& i_heading, const std::wstring& i_reason, const std::wstring& i_url) {
    Page page;
    page.title = i_heading;
    page.blocks = {Block(Kind::Heading, i_heading), Block(Kind::Paragraph, i_reason), Block(Kind::Link, L"Try again")};
    page.blocks.back().url = i_url;
    return page;
}

/// The end of a sentence. Some captions are already questions.
std::wstring Ended(const std::wstring& i_words) {
    return i_words.ends_with(L'?') ? i_words : i_words + L".";
}

bool IsBlank(std::string_view i_body) {
    return i_body.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

Page PageOf(const WebReply& i_reply) {
    constexpr DWORD first_error_status = 400;
    const std::wstring host = Url(i_reply.url).Host();
    if (FAILED(i_reply.result))
        return Notice(L"This page cannot be shown",
                      L"Cannot load " + (host.empty() ? i_reply.url : host) + L": " +
                          Ended(CodeInWords(i_reply.result)),
                      i_reply.url);
    if (i_reply.status >= first_error_status && IsBlank(i_reply.body))
        return Notice(L"The server has no page for this",
                      host + L" answered with the error " + std::to_wstring(i_reply.status) + L".", i_reply.url);
    const std::wstring text = FromUtf8(i_reply.body);
    const bool is_html = i_reply.content_type.empty() || i_reply.content_type.find(L"html") != std::wstring::npos;
    return is_html ? Page::FromHtml(text) : Page::FromText(text);
}

Page LoadingPage() {
    return Page::FromText(L"Loading\u2026");
}

} // namespace DevHost
