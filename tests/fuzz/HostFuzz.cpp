// What the development host reads: XML, layouts, settings, command lines, and the pages of its browser.

#include "fuzz/FuzzInput.h"

#include "base/Failure.h"
#include "base/Unicode.h"
#include "base/Xml.h"
#include "browser/FormSubmission.h"
#include "browser/HtmlEntities.h"
#include "browser/HtmlTokenizer.h"
#include "browser/Page.h"
#include "browser/Url.h"
#include "commands/CommandLine.h"
#include "commands/JsonValue.h"
#include "services/CabFile.h"
#include "services/CabTemplate.h"
#include "support/TemporaryFolder.h"
#include "uix/Layout.h"

#include <rapidjson/document.h>

namespace Fuzz {
namespace {

using namespace DevHost;

std::string Written(const XmlElement& i_element) {
    const auto escaped = [](std::wstring_view i_text) {
        std::string text;
        for (const char letter : ToUtf8(i_text))
            text += letter == '<'   ? "&lt;"
                    : letter == '&' ? "&amp;"
                    : letter == '"' ? "&quot;"
                    : letter == '>' ? "&gt;"
                                    : std::string(1, letter);
        return text;
    };
    std::string text = "<" + ToUtf8(i_element.name);
    for (const auto& [name, value] : i_element.attributes)
        text += " " + ToUtf8(name) + "=\"" + escaped(value) + "\"";
    text += ">" + escaped(i_element.text);
    for (const XmlElement& child : i_element.children)
        text += Written(child);
    return text + "</" + ToUtf8(i_element.name) + ">";
}

XmlElement MadeElement(Random& io_random, int i_depth) {
    XmlElement element;
    element.name = L"e" + io_random.Text(L"abc", 3);
    for (std::size_t i = io_random.Below(3); i > 0; --i)
        element.attributes[L"a" + io_random.Text(L"xyz", 2)] = io_random.Text(L"ab<>&\"' \u00E9\u65E5", 8);
    element.text = L"t" + io_random.Text(L"ab<>&\"' \u00E9", 8) + L"t";
    for (std::size_t i = i_depth > 0 ? io_random.Below(4) : 0; i > 0; --i)
        element.children.push_back(MadeElement(io_random, i_depth - 1));
    return element;
}

TEST(HostFuzz, XmlIsReadAsItWasWritten) {
    ForChances([](Random& io_random) {
        const XmlElement made = MadeElement(io_random, 3);
        const std::string text = Written(made);
        EXPECT_EQ(Written(ParseXml(text.data(), text.size())), text);
    });
}

constexpr std::string_view good_layout =
    R"(<dialogs><dialog id="d" title="T" width="100" height="50" font="Tahoma" fontSize="8.25" scrollable="true">)"
    R"(<label id="a" x="1" y="2" width="3" height="4" style="#00000001" text="$$$.x"/>)"
    R"(<button id="b" x="1" y="2" width="3" height="4" fixed="true"/></dialog></dialogs>)";
constexpr std::string_view good_template =
    R"(<CabTemplate><ItemSet id="s"><Item id="i" type="Int"/><Item id="j" type="Array" itemSet="s"/></ItemSet>)"
    R"(<Root id="r" type="Dictionary" itemSet="s"/></CabTemplate>)";

/// Changes names, attributes and the order of elements. The documents stay well-formed, because the XML reader is the
/// system's (and Wine's never returns for some truncated texts).
void Mutate(Random& io_random, XmlElement& io_element) {
    static const std::vector<std::wstring> names = {L"id",      L"x",        L"width", L"height",   L"fixed",
                                                    L"style",   L"fontSize", L"type",  L"label",    L"dialog",
                                                    L"ItemSet", L"Item",     L"Root",  L"fixedArea"};
    static const std::vector<std::wstring> values = {
        L"",    L"a",   L"d",     L"r",     L"s",         L"0",          L"-1",    L"1",    L"16384",       L"16385",
        L"nan", L"inf", L"1e400", L"0x10",  L"#00000001", L"#0",         L"true",  L"TRUE", L"99999999999", L" 7",
        L"+7",  L"7 ",  L"Int",   L"Array", L"String",    L"Dictionary", L"\u0661"};
    XmlElement* element = &io_element;
    while (!element->children.empty() && !io_random.OneIn(3))
        element = &element->children[io_random.Below(element->children.size())];
    switch (io_random.Below(6)) {
    case 0:
        element->name = io_random.Pick(names);
        break;
    case 1:
        if (!element->attributes.empty())
            element->attributes.erase(element->attributes.begin());
        break;
    case 2:
        if (!element->children.empty())
            element->children.push_back(element->children[io_random.Below(element->children.size())]);
        break;
    case 3:
        if (!element->children.empty())
            element->children.pop_back();
        break;
    default:
        element->attributes[io_random.Pick(names)] = io_random.Pick(values);
    }
}

std::string MutatedDocument(Random& io_random, std::string_view i_good) {
    XmlElement root = ParseXml(i_good.data(), i_good.size());
    for (std::size_t i = io_random.Below(5); i > 0; --i)
        Mutate(io_random, root);
    return Written(root);
}

TEST(HostFuzz, ALayoutIsPossibleOrRefused) {
    std::uint64_t good = 0;
    ForChances([&](Random& io_random) {
        const std::string text = MutatedDocument(io_random, good_layout);
        SCOPED_TRACE(text);
        try {
            const Layout layout = Layout::Read(text.data(), text.size(), L"d");
            ++good;
            EXPECT_TRUE(layout.width > 0 && layout.height > 0 && layout.font_points > 0 && layout.font_points <= 200);
            EXPECT_LE(layout.fixed_height, layout.height);
            for (const LayoutItem& item : layout.items) {
                EXPECT_FALSE(item.id.empty());
                EXPECT_TRUE(item.place.left >= 0 && item.place.left < item.place.right);
                EXPECT_TRUE(item.place.top >= 0 && item.place.top < item.place.bottom);
            }
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), E_INVALIDARG);
        }
    });
    EXPECT_GT(good, InputCount() / 50);
}

TEST(HostFuzz, ASettingsTemplateHasADictionaryForItsRootOrIsRefused) {
    std::uint64_t good = 0;
    ForChances([&](Random& io_random) {
        const std::string text = MutatedDocument(io_random, good_template);
        SCOPED_TRACE(text);
        try {
            const auto settings = CabTemplate::Parse(text.data(), text.size());
            EXPECT_EQ(settings->Root(L"r").type, Qorv::AUX_CabType_Dictionary);
            ++good;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), E_INVALIDARG);
        }
    });
    EXPECT_GT(good, InputCount() / 50);
}

const Language settings = {{R"({"UserId":"dbid:AA","Version":1,"List":["a",{"b":2}],"None":null})", "{}", "[]"},
                           {"{", "}", "[", "]", "\"", ",", ":", "1e999", "-2147483649", "4294967296", "1.5", "true",
                            "\\u0000", "\\ud800", "\xEF\xBB\xBF", "null", "\"a\":"}};

/// Files are slow: a fiftieth of the inputs must be enough.
TEST(HostFuzz, ASettingsFileIsReadAndWrittenTheSameOrSetAside) {
    const Tests::TemporaryFolder folder;
    const std::filesystem::path path = folder.Path() / L"settings.json";
    ForInputs(settings, [&](Random& io_random, const std::string& i_input) {
        if (!io_random.OneIn(50))
            return;
        Tests::WriteBytes(path, i_input);
        const CabFile file(path);
        try {
            const CabNode::Node first = file.Load();
            file.Save(*first);
            const std::string once = Tests::ReadBytes(path);
            file.Save(*file.Load());
            EXPECT_EQ(Tests::ReadBytes(path), once);
        } catch (const Failure&) {
            EXPECT_FALSE(std::filesystem::exists(path));
            for (const auto& aside : std::filesystem::directory_iterator(folder.Path()))
                std::filesystem::remove(aside);
        }
    });
}

const Language lines = {{"put \"a b.txt\" /x # note", "--profile p --json ls -R /", "stat -- --json", "\"\" a"},
                        {"\"", " ", "#", "\t", "--profile", "--user", "--trace", "file", "--", "--json", "\r", "\\"}};

TEST(HostFuzz, ALineIsItsWords) {
    ForTexts(lines, [](Random& io_random, const std::wstring& i_input) {
        try {
            const Arguments words = SplitLine(i_input);
            if (io_random.Below(20) == 0) { // Making the parser takes a while.
                EXPECT_FALSE(CommandLine(words).Name().empty());
            }
        } catch (const UsageError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    });
    ForChances([](Random& io_random) {
        Arguments words(io_random.Below(6));
        std::wstring line;
        for (std::wstring& word : words) {
            word = io_random.Text(L"ab #\t\\\u65E5", 6);
            line += std::wstring(1 + io_random.Below(2), L' ') + L'"' + word + L'"';
        }
        EXPECT_EQ(SplitLine(line), words);
    });
}

TEST(HostFuzz, AResultIsJsonWhateverItsText) {
    ForTexts(lines, [](Random&, const std::wstring& i_input) {
        const std::string text = JsonValue().Begin().Text("a", i_input).Number("b", 7).End().Done();
        rapidjson::Document document;
        ASSERT_FALSE(document.Parse(text.data(), text.size()).HasParseError()) << text;
        EXPECT_EQ((std::string_view(document["a"].GetString(), document["a"].GetStringLength())), ToUtf8(i_input));
        EXPECT_EQ(text.find('\n'), text.npos);
    });
}

const Language pages = {
    {"<html><head><title>Sign in &amp; go</title><style>p{}</style></head><body><h1>Hello</h1><p>Text <a "
     "href=\"/x?y#z\">link</a></p>"
     "<form method=post action=\"/login\"><label>Name</label><input name=email value='a'><input type=password name=p>"
     "<input type=hidden name=t value=1><button name=b value=2>Go</button><input type=submit "
     "value=Send></form></body></html>",
     "plain", "<ul><li>one<li>two</ul><!-- c --><script>if (a < b) {}</script>"},
    {"<",
     ">",
     "</",
     "<!--",
     "-->",
     "<script>",
     "</script>",
     "<form>",
     "</form>",
     "<input",
     "type=",
     "\"",
     "'",
     "=",
     "&",
     "&amp;",
     "&#228;",
     "&#x110000;",
     "&#99999999999;",
     "&;",
     "<button>",
     "</button>",
     "<title>",
     "<a href=",
     "\xC3",
     " ",
     "/",
     "\n",
     "<li>",
     "<h1>"}};

TEST(HostFuzz, EveryTextIsAPageWhoseFormsCanBeSent) {
    std::uint64_t buttons = 0;
    ForTexts(pages, [&](Random&, const std::wstring& i_input) {
        const Page page = Page::FromHtml(i_input);
        for (std::size_t index = 0; index < page.blocks.size(); ++index) {
            const PageBlock& block = page.blocks[index];
            EXPECT_TRUE(block.form == PageBlock::no_form || block.form < page.forms.size());
            if (block.kind != PageBlock::Kind::Button)
                continue;
            ++buttons;
            const WebRequest request = SubmitForm(page, L"https://www.example.com/a/b?c", index,
                                                  [](std::size_t) { return std::wstring(L"& =\u00E9"); });
            EXPECT_TRUE(request.is_post || request.body.empty());
            EXPECT_EQ(request.body.find_first_of(" \n\""), request.body.npos);
        }
        if (i_input.find_first_of(L"<&") == i_input.npos) {
            EXPECT_EQ(ReplaceEntities(i_input), i_input);
        }
        for (const HtmlToken& token : TokenizeHtml(i_input))
            EXPECT_LE(token.text.size(), 2 * i_input.size());
    });
    EXPECT_GT(buttons, InputCount() / 50);
}

const Language references = {
    {"https://www.example.com:8080/a/b/c?d=e#f", "http://h", "/x/y", "../z", "?q", "#f", "//other/p", "mailto:a@b",
     "."},
    {"/", "//", "..", "./", "../", "?", "#", ":", "https:", "http://", "@", "%2F", "a", "\\", " "}};

TEST(HostFuzz, AnAddressIsItsPartsAndAReferenceLeadsSomewhere) {
    ForTexts(references, [](Random& io_random, const std::wstring& i_input) {
        const Url url(i_input);
        EXPECT_EQ(url.WithoutFragment().Text() + url.Fragment(), i_input);
        EXPECT_EQ(url.WithoutFragment().Text().find(L'#'), std::wstring::npos);
        EXPECT_EQ(url.WithFragment(L"#x").Fragment(), L"#x");
        const std::wstring reference = MutatedText(io_random, references);
        const Url base(L"https://www.example.com/a/b/c?d#e");
        const Url resolved = base.Resolve(reference);
        EXPECT_EQ(base.Resolve(resolved.Text()).Text(), resolved.Text()) << Literal(std::wstring_view(reference));
        url.Resolve(reference);
    });
}

} // namespace
} // namespace Fuzz
