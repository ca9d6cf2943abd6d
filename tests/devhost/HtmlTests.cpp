// What the development host's browser makes of HTML, forms and addresses, without a window.

#include "base/Unicode.h"
#include "browser/FormSubmission.h"
#include "browser/HtmlTokenizer.h"
#include "browser/Page.h"
#include "browser/Url.h"

#include <gtest/gtest.h>

#include <random>

using namespace DevHost;

namespace {

/// A page in one line: "h:Heading p:Text a:Link(url) l:Label f:name=text w:name=text b:name=value(Caption)
/// i:name=value"
std::string Outline(const Page& i_page) {
    std::wstring outline;
    for (const PageBlock& block : i_page.blocks) {
        const std::wstring form = block.form == PageBlock::no_form ? L"" : std::to_wstring(block.form);
        outline += outline.empty() ? L"" : L" | ";
        switch (block.kind) {
        case PageBlock::Kind::Heading:
            outline += L"h:" + block.text;
            break;
        case PageBlock::Kind::Paragraph:
            outline += L"p:" + block.text;
            break;
        case PageBlock::Kind::ListItem:
            outline += L"li:" + block.text;
            break;
        case PageBlock::Kind::Link:
            outline += L"a:" + block.text + L"(" + block.url + L")";
            break;
        case PageBlock::Kind::Label:
            outline += L"l:" + block.text;
            break;
        case PageBlock::Kind::Field:
            outline += L"f" + form + L":" + block.name + L"=" + block.text;
            break;
        case PageBlock::Kind::Password:
            outline += L"w" + form + L":" + block.name + L"=" + block.text;
            break;
        case PageBlock::Kind::Button:
            outline += L"b" + form + L":" + block.name + L"=" + block.value + L"(" + block.text + L")";
            break;
        case PageBlock::Kind::Hidden:
            outline += L"i" + form + L":" + block.name + L"=" + block.value;
            break;
        }
    }
    return ToUtf8(outline);
}

TEST(Page, ShowsWhatTheDocumentSays) {
    const struct {
        const char* html;
        const char* outline;
    } cases[] = {
        {"", ""},
        {"text", "p:text"},
        {"  two\n words ", "p:two words"},
        {"a < b > c & d", "p:a < b > c & d"},
        {"&lt;b&gt; &amp;amp; &#228;&#xe4;&nbsp;&unknown; &", "p:<b> &amp; \xC3\xA4\xC3\xA4\xC2\xA0&unknown; &"},
        {"&#0;&#xD800;&#x110000;&#999999999;&#x1F600;",
         "p:\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x98\x80"},
        {"<h1>A</h1><p>B<p>C<br>D", "h:A | p:B | p:C\nD"},
        {"<script>if (a<b) '</p>'</SCRIPT >x<style>p{}</style>", "p:x"},
        {"<script>never ends", ""},
        {"a<!-- <p>no -->b<!---->c<!doctype x>d<?php ?>e", "p:abcde"},
        {"a<!-- never ends", "p:a"},
        {"<ul><li>One<li>Two</ul>", "li:\xE2\x80\xA2 One | li:\xE2\x80\xA2 Two"},
        {"See <a href='/t?a&amp;b'>terms</a>.", "p:See | a:terms(/t?a&b) | p:."},
        {"<a name=x>no link</a>", "p:no link"},
        {"<FORM><LABEL FOR=e>Email</LABEL><INPUT NAME=e VALUE='a \"b\"'>", "l:Email | f0:e=a \"b\""},
        {"<label>Email <input name=e type=email></label>", "l:Email | f:e="},
        {"<input type=password name=p value=x><input type=hidden name=h value=1>", "w:p=x | i:h=1"},
        {"<form></form><form><input type=submit name=s value=Go></form><input name=z>", "b1:s=Go(Go) | f:z="},
        {"<form><button name=allow value=1>Allow <b>it</b></button><button type=button>No</button>",
         "b0:allow=1(Allow it) | p:No"},
        {"<input type=checkbox name=c><input type=checkbox name=d checked><input type=submit>", "i:d=on | b:=(Submit)"},
        {"<input name=a name=b/><input/name=c>", "f:a= | f:c="},
        {"<p", ""},
        {"<p class=\"never ends", ""},
        {"</", "p:</"},
        {"<>x</>", "p:<>x</>"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Outline(Page::FromHtml(FromUtf8(row.html))), row.outline) << row.html;
    EXPECT_EQ(Page::FromHtml(L"<head><title> A &amp; B </title></head><p>x").title, L"A & B");
}

TEST(Page, TakesAnyText) {
    constexpr std::wstring_view alphabet = L"<>/!-=\"'&#;x0 pabinfortmhscryle\n";
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        std::wstring text(random() % 200, L' ');
        for (wchar_t& character : text)
            character = alphabet[random() % alphabet.size()];
        Page::FromHtml(text);
    }
    std::wstring many;
    for (int round = 0; round < 100'000; ++round)
        many += L"<p>x<input>";
    EXPECT_LE(Page::FromHtml(many).blocks.size(), 400u) << "each takes a window";
}

TEST(FormSubmission, SendsTheFieldsOfItsFormInTheirOrder) {
    const Page page =
        Page::FromHtml(L"<input name=outside><form method=POST action='/a?q=1#x'><input type=hidden name=k value='v w'>"
                       L"<input name=e><input><input name=p type=password><button name=allow value=yes>Allow</button>"
                       L"<button name=cancel>Cancel</button></form><form><input name=s><input type=submit></form>");
    const auto entry = [&](std::size_t i_block) {
        return page.blocks[i_block].name == L"e" ? std::wstring(L"\u00e4&\u20ac=+ \U0001F600") : std::wstring(L"*-._~");
    };
    const auto button = [&](const wchar_t* i_caption) {
        for (std::size_t block = 0; block < page.blocks.size(); ++block)
            if (page.blocks[block].kind == PageBlock::Kind::Button && page.blocks[block].text == i_caption)
                return block;
        return std::size_t{0};
    };
    const WebRequest allow = SubmitForm(page, L"https://host/p?x#y", button(L"Allow"), entry);
    EXPECT_TRUE(allow.is_post);
    EXPECT_EQ(allow.url, L"https://host/a?q=1");
    EXPECT_EQ(allow.body, "k=v+w&e=%C3%A4%26%E2%82%AC%3D%2B+%F0%9F%98%80&p=*-._%7E&allow=yes");
    EXPECT_TRUE(SubmitForm(page, L"https://host/", button(L"Cancel"), entry).body.ends_with("&cancel="));
    const WebRequest search = SubmitForm(page, L"https://host/p?x#y", button(L"Submit"), entry);
    EXPECT_FALSE(search.is_post);
    EXPECT_EQ(search.url, L"https://host/p?s=*-._%7E");
}

TEST(Url, ResolvesReferencesOfAPage) {
    const std::wstring base = L"https://host:81/a/b/c?q#f";
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L"https://host:81/a/b/c?q"},      {L"#g", L"https://host:81/a/b/c?q#g"},
        {L"?r", L"https://host:81/a/b/c?r"},    {L"d", L"https://host:81/a/b/d"},
        {L"./d/", L"https://host:81/a/b/d/"},   {L"../d?x=../y#z", L"https://host:81/a/d?x=../y#z"},
        {L"../../../d", L"https://host:81/d"},  {L"..", L"https://host:81/a/"},
        {L".", L"https://host:81/a/b/"},        {L"/d", L"https://host:81/d"},
        {L"//other/d", L"https://other/d"},     {L"http://other/d#x:y", L"http://other/d#x:y"},
        {L"about:blank", L"about:blank"},       {L"d:e", L"d:e"},
        {L"./d:e", L"https://host:81/a/b/d:e"},
    };
    for (const auto& [reference, expected] : cases)
        EXPECT_EQ(Url(base).Resolve(reference).Text(), expected);
    EXPECT_EQ(Url(L"https://host").Resolve(L"d").Text(), L"https://host/d");
    EXPECT_EQ(Url(base).Host(), L"host:81");
    EXPECT_EQ(Url(base).Fragment(), L"#f");
    EXPECT_EQ(Url(base).WithQuery(L"n").Text(), L"https://host:81/a/b/c?n#f");
    EXPECT_TRUE(Url(L"HTTPS://h").IsWeb() && !Url(L"file:///c").IsWeb() && !Url(L"").IsWeb());
}

} // namespace
