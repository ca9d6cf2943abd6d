// Layouts of dialogs: reading them, and where things go on the screen.

#include "base/Failure.h"
#include "uix/Layout.h"
#include "uix/MessageLayout.h"
#include "uix/Scale.h"
#include "uix/WindowPlace.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace DevHost;

static bool operator==(const RECT& i_first, const RECT& i_second) {
    return EqualRect(&i_first, &i_second) != FALSE;
}

static void PrintTo(const RECT& i_rect, std::ostream* o_stream) {
    *o_stream << i_rect.left << ' ' << i_rect.top << ' ' << i_rect.right << ' ' << i_rect.bottom;
}

namespace {

Layout Read(const std::string& i_document) {
    return Layout::Read(i_document.data(), i_document.size(), L"D");
}

std::string Dialog(const std::string& i_attributes, const std::string& i_items = {}) {
    return "<dialogs><dialog id=\"Other\"/><dialog id=\"D\" " + i_attributes + ">" + i_items + "</dialog></dialogs>";
}

TEST(Layout, HoldsWhatTheDocumentSays) {
    Layout layout = Read(Dialog(
        R"(title="$$$.db.title" width="700" height="480" font="Verdana" fontSize="8.25" foreground="true"
           scrollable="true" defaultItem="btn.ok" fixedArea="40" unknown="x")",
        R"(<!-- a note --><label id="lb" x="42" y="10" width="622" height="20" drawTextFlags="#00000a20" text="$$$.no.such"/>
           <button id="btn.ok" x="483" y="8" width="100" height="24" style="#86C80002" fixed="true" text="$$$.db.ok"/>)"));
    Localization texts;
    texts.Merge(R"(<localization language="en" namespace="db"><string id="title">Öffnen</string>
                   <string id="ok">OK</string></localization>)");
    layout.Localize(texts);
    EXPECT_EQ(layout.title, L"Öffnen");
    EXPECT_EQ(layout.width, 700);
    EXPECT_EQ(layout.height, 480);
    EXPECT_EQ(layout.fixed_height, 40);
    EXPECT_EQ(layout.font_name, L"Verdana");
    EXPECT_EQ(layout.font_points, 8.25);
    EXPECT_TRUE(layout.is_foreground && layout.is_scrollable && !layout.has_help_button);
    EXPECT_EQ(layout.default_item, L"btn.ok");
    ASSERT_EQ(layout.items.size(), 2u);
    EXPECT_EQ(layout.items[0].kind, L"label");
    EXPECT_EQ(layout.items[0].place, (RECT{42, 10, 664, 30}));
    EXPECT_EQ(layout.items[0].draw_text_flags, 0xa20u);
    EXPECT_EQ(layout.items[0].text, L"$$$.no.such") << "an unknown id must stay visible";
    EXPECT_EQ(layout.items[1].style, 0x86C80002u);
    EXPECT_EQ(layout.items[1].text, L"OK");
    EXPECT_TRUE(layout.items[1].is_fixed && !layout.items[0].is_fixed);
}

TEST(Layout, RefusesImpossibleDocuments) {
    const std::string good = "width=\"10\" height=\"10\"";
    const std::string item_place = " x=\"0\" y=\"0\" width=\"1\" height=\"1\"";
    const std::pair<const char*, std::string> cases[] = {
        {"nothing", ""},
        {"no XML", "dialogs"},
        {"cut", Dialog(good).substr(0, 60)},
        {"other root", "<dialog id=\"D\" " + good + "/>"},
        {"no such dialog", "<dialogs><dialog id=\"d\" " + good + "/></dialogs>"},
        {"no size", Dialog("")},
        {"no height", Dialog("width=\"10\"")},
        {"negative", Dialog("width=\"-10\" height=\"10\"")},
        {"too large", Dialog("width=\"16385\" height=\"10\"")},
        {"overflow", Dialog("width=\"99999999999999999999\" height=\"10\"")},
        {"no number", Dialog("width=\"10px\" height=\"10\"")},
        {"switch", Dialog(good + " scrollable=\"yes\"")},
        {"font size", Dialog(good + " fontSize=\"0\"")},
        {"font size nan", Dialog(good + " fontSize=\"nan\"")},
        {"item without id", Dialog(good, "<label" + item_place + "/>")},
        {"item without place", Dialog(good, "<label id=\"a\"/>")},
        {"item twice", Dialog(good, "<label id=\"a\"" + item_place + "/><button id=\"a\"" + item_place + "/>")},
        {"flags without mark", Dialog(good, "<label id=\"a\" style=\"00000001\"" + item_place + "/>")},
        {"flags too short", Dialog(good, "<label id=\"a\" style=\"#1\"" + item_place + "/>")},
        {"flags no digits", Dialog(good, "<label id=\"a\" style=\"#0000000g\"" + item_place + "/>")},
    };
    EXPECT_NO_THROW(Read(Dialog(good, "<label id=\"a\"" + item_place + "/>")));
    for (const auto& [name, document] : cases) {
        try {
            Read(document);
            ADD_FAILURE() << name << " was taken";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Code(), E_INVALIDARG) << name;
        }
    }
}

TEST(Scale, TurnsUnitsIntoPixelsEdgeByEdge) {
    EXPECT_EQ(Scale(96).Pixels(RECT{8, 7, 38, 33}), (RECT{8, 7, 38, 33}));
    EXPECT_EQ(Scale(144).Pixels(RECT{8, 7, 38, 33}), (RECT{12, 11, 57, 50}));
    EXPECT_EQ(Scale(192).Pixels(25), 50);
    // What has the same edge in units has the same edge in pixels, however it is rounded.
    EXPECT_EQ(Scale(120).Pixels(RECT{3, 0, 10, 1}).right, Scale(120).Pixels(RECT{10, 0, 13, 1}).left);
}

TEST(WindowPlace, IsInTheMiddleButWhollyOnTheScreen) {
    const RECT screen{0, 0, 1000, 800};
    const struct {
        const char* name;
        SIZE size;
        RECT around;
        RECT expected;
    } cases[] = {
        {"middle", {200, 100}, {400, 300, 800, 700}, {500, 450, 700, 550}},
        {"over the right edge", {400, 100}, {900, 300, 1000, 400}, {600, 300, 1000, 400}},
        {"over the top", {200, 300}, {400, 0, 600, 20}, {400, 0, 600, 300}},
        {"owner elsewhere", {200, 100}, {-900, -900, -800, -800}, {0, 0, 200, 100}},
        {"larger than the screen", {2000, 900}, {0, 0, 10, 10}, {0, 0, 1000, 800}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(CentredPlace(row.size, row.around, screen), row.expected) << row.name;
}

TEST(MessageLayout, HasRoomForEveryTextAndCaption) {
    const struct {
        const char* name;
        MessageContent content;
    } cases[] = {
        {"nothing", {L"", L"", {L"OK"}}},
        {"icon and one line", {L"", L"Line", {L"OK", L"Cancel"}, IDI_WARNING}},
        {"long captions", {L"", L"Line", {std::wstring(60, L'W'), L"OK", std::wstring(40, L'W')}}},
        {"long text", {L"", std::wstring(9000, L'x') + L" end", {L"OK"}, IDI_QUESTION}},
    };
    for (const int dots_per_inch : {96, 144, 192})
        for (const auto& row : cases) {
            const MessageLayout layout(row.content, Scale(dots_per_inch));
            SCOPED_TRACE(row.name);
            EXPECT_LE(layout.text.right, layout.client.cx);
            EXPECT_LE(layout.text.bottom, layout.button_area_top);
            RECT work_area{};
            SystemParametersInfoW(SPI_GETWORKAREA, 0, &work_area, 0);
            EXPECT_LE(layout.client.cy, work_area.bottom - work_area.top) << "the buttons stay on the screen";
            EXPECT_LE(layout.text.right - layout.text.left, Scale(dots_per_inch).Pixels(640));
            std::wstring unbroken = layout.shown_text;
            std::erase(unbroken, L'\n');
            EXPECT_EQ(unbroken, row.content.text);
            ASSERT_EQ(layout.buttons.size(), row.content.buttons.size());
            LONG left = 0;
            for (const RECT& button : layout.buttons) {
                EXPECT_GT(button.left, left);
                EXPECT_GT(button.top, layout.button_area_top);
                EXPECT_LT(button.bottom, layout.client.cy);
                left = button.right;
            }
            EXPECT_LT(left, layout.client.cx);
        }
}

} // namespace
