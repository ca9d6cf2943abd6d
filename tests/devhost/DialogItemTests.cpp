// The items of a dialog except the list: what the plug-in does to them, what they report about the user, and keyboard
// navigation.

#include "DialogTest.h"
#include "base/Unicode.h"
#include "qorv/Values.h"
#include "script/KeySteps.h"
#include "script/ListSteps.h"
#include "uix/Scale.h"
#include "uix/WindowText.h"

#include <oleacc.h>

namespace Tests {
namespace {

using Qorv::ComPtr;

constexpr char layout[] =
    R"(<picture id="pic" x="8" y="7" width="30" height="26" image="ico.folder.opened" name="Picture"/>
    <label id="lb" x="40" y="8" width="250" height="20" text="Label:"/>
    <edit id="ed" x="8" y="40" width="140" height="20" labelledBy="lb"/>
    <combo id="cb" x="150" y="40" width="144" height="20" name="Types"/>
    <list id="lst" x="8" y="70" width="280" height="80" name="Files"/>
    <button id="btn.other" x="8" y="8" width="90" height="24" fixed="true" text="Other"/>
    <button id="btn.ok" x="108" y="8" width="90" height="24" fixed="true" text="OK"/>)";

class DialogItemTest : public DialogTest {
protected:
    void SetUp() override { ASSERT_EQ(Create(layout), S_OK); }

    void TearDown() override {
        if (m_sink->dialog != nullptr)
            Destroy();
        m_bar.Reset();
        DialogTest::TearDown();
    }

    std::wstring TextOf(Qorv::IUIX_Item* i_item) {
        Qorv::Bstr text;
        EXPECT_EQ(i_item->get_Text(&text), S_OK);
        return std::wstring(text.View());
    }

    void PressKey(const std::wstring& i_name) {
        DevHost::PressKey(m_sink->Window(), i_name);
        Pump();
        DevHost::ReleaseModifiers();
    }

    ComPtr<Qorv::IUIX_Image> Image(Qorv::PCStr i_name) {
        ComPtr<Qorv::IUIX_Image> image;
        EXPECT_EQ(m_ui->GetImage(i_name, &image), S_OK);
        return image;
    }

    HRESULT AddBar(Qorv::PCStr i_id, Qorv::PCStr i_beside_id) {
        const auto image = Image(L"ico.up");
        const Qorv::UIX_Command commands[] = {{1, L"Up", image, VARIANT_FALSE},
                                              {2, L"New folder", image},
                                              {},
                                              {3, L"Delete", image, VARIANT_FALSE},
                                              {4, L"Refresh", image}};
        return m_sink->dialog->AddCommandBar(i_id, i_beside_id, commands, ULONG{std::size(commands)}, &m_bar);
    }

    static RECT PlaceOf(HWND i_window) {
        RECT place{};
        GetWindowRect(i_window, &place);
        return place;
    }

    static std::wstring FocusedText() { return DevHost::WindowText(GetFocus()); }

    ComPtr<Qorv::IUIX_CommandBar> m_bar;
};

TEST_F(DialogItemTest, AreFoundByIdAndKind) {
    const struct {
        Qorv::PCStr id;
        const IID& kind;
        HRESULT result;
    } cases[] = {
        {L"ed", Qorv::IUIX_Edit::Id, S_OK},
        {L"ed", Qorv::IUIX_Item::Id, S_OK},
        {L"ed", IID_IUnknown, S_OK},
        {L"cb", Qorv::IUIX_Combo::Id, S_OK},
        {L"lst", Qorv::IUIX_List::Id, S_OK},
        {L"pic", Qorv::IUIX_Item::Id, S_OK},
        {L"lb", Qorv::IUIX_Edit::Id, E_NOINTERFACE},
        {L"ED", Qorv::IUIX_Edit::Id, E_INVALIDARG},
        {nullptr, Qorv::IUIX_Edit::Id, E_POINTER},
    };
    for (const auto& row : cases) {
        ComPtr<IUnknown> item;
        EXPECT_EQ(m_sink->dialog->GetItem(row.id, row.kind, reinterpret_cast<void**>(&item)), row.result);
        EXPECT_EQ(item != nullptr, SUCCEEDED(row.result));
    }
    const auto edit = Item<Qorv::IUIX_Edit>(L"ed");
    EXPECT_EQ(edit.As<Qorv::IUIX_Item>(), Item<Qorv::IUIX_Item>(L"ed")) << "one object for an item";
}

TEST_F(DialogItemTest, FailWhenTheirWindowIsGone) {
    const auto label = Item<Qorv::IUIX_Item>(L"lb");
    const auto edit = Item<Qorv::IUIX_Edit>(L"ed");
    const auto combo = Item<Qorv::IUIX_Combo>(L"cb");
    ASSERT_EQ(AddBar(L"bar", L"lb"), S_OK);
    Destroy();
    Qorv::Bstr text;
    LONG number = 0;
    VARIANT_BOOL has_focus = VARIANT_TRUE;
    Qorv::PARAM_T param = 1;
    const HRESULT results[] = {
        label->get_Text(&text),
        label->put_Text(L"x"),
        label->put_IsEnabled(VARIANT_TRUE),
        label->put_IsVisible(VARIANT_TRUE),
        label->get_HasFocus(&has_focus),
        label->SetFocus(),
        edit->SelectText(0, -1),
        combo->Clear(),
        combo->InsertItem(-1, L"x", nullptr, nullptr, 0, 0),
        combo->get_Count(&number),
        combo->get_SelItem(&number),
        combo->put_SelItem(-1),
        combo->GetItemText(0, &text),
        combo->GetItemParam(0, &param),
        m_bar->put_IsCommandEnabled(2, VARIANT_TRUE),
    };
    for (const HRESULT result : results)
        EXPECT_EQ(result, E_UNEXPECTED);
}

TEST_F(DialogItemTest, EditTellsOnlyWhatTheUserTypes) {
    const auto item = Item<Qorv::IUIX_Item>(L"ed");
    Use([&] {
        item->SetFocus();
        EXPECT_EQ(item->put_Text(L"a name.pdf"), S_OK);
        EXPECT_EQ(TakeEvents(), L"");
        EXPECT_EQ(item.As<Qorv::IUIX_Edit>()->SelectText(2, 6), S_OK);
        DevHost::TypeText(m_sink->Window(), L"file");
        EXPECT_EQ(TakeEvents().substr(0, 11), L"changed ed;");
        EXPECT_EQ(TextOf(item), L"a file.pdf");
        // Tab selects all, so that typing replaces it.
        Item<Qorv::IUIX_Item>(L"btn.ok")->SetFocus();
        PressKey(L"Tab");
        DevHost::TypeText(m_sink->Window(), L"x");
        Pump();
        EXPECT_EQ(TextOf(item), L"x");
    });
    const auto edit = item.As<Qorv::IUIX_Edit>();
    EXPECT_EQ(edit->SelectText(0, -1), S_OK);
    EXPECT_EQ(edit->SelectText(0, 2), E_INVALIDARG);
    EXPECT_EQ(edit->SelectText(-1, 0), E_INVALIDARG);
    EXPECT_EQ(edit->SelectText(1, 0), E_INVALIDARG);
    // Many long names fit.
    const std::wstring names(100'000, L'x');
    EXPECT_EQ(item->put_Text(names.c_str()), S_OK);
    EXPECT_EQ(TextOf(item).size(), names.size());
}

TEST_F(DialogItemTest, ComboKeepsItemsAndTellsOfTheUsersChoice) {
    const auto combo = Item<Qorv::IUIX_Combo>(L"cb");
    EXPECT_EQ(combo->InsertItem(-1, L"PDF files", L"A hint", nullptr, 11, 0), S_OK);
    EXPECT_EQ(combo->InsertItem(-1, L"All files", nullptr, nullptr, 33, 0), S_OK);
    EXPECT_EQ(combo->InsertItem(1, L"Pictures", nullptr, nullptr, 22, 0), S_OK);
    EXPECT_EQ(combo->InsertItem(4, L"x", nullptr, nullptr, 0, 0), E_INVALIDARG);
    EXPECT_EQ(combo->InsertItem(-2, L"x", nullptr, nullptr, 0, 0), E_INVALIDARG);
    LONG selected = 0;
    combo->get_SelItem(&selected);
    EXPECT_EQ(selected, -1);
    Qorv::Bstr text;
    Qorv::PARAM_T param = 0;
    EXPECT_EQ(combo->GetItemText(1, &text), S_OK);
    EXPECT_EQ(text.View(), L"Pictures");
    EXPECT_EQ(combo->GetItemParam(2, &param), S_OK);
    EXPECT_EQ(param, 33u);
    EXPECT_EQ(combo->GetItemParam(3, &param), E_INVALIDARG);
    EXPECT_EQ(combo->GetItemText(-1, &text), E_INVALIDARG);
    Use([&] {
        EXPECT_EQ(combo->put_SelItem(1), S_OK);
        EXPECT_EQ(combo->put_SelItem(3), E_INVALIDARG);
        EXPECT_EQ(TakeEvents(), L"");
        Item<Qorv::IUIX_Item>(L"cb")->SetFocus();
        PressKey(L"Down");
        EXPECT_EQ(TakeEvents(), L"changed cb;");
        combo->get_SelItem(&selected);
        EXPECT_EQ(selected, 2);
        EXPECT_EQ(TextOf(Item<Qorv::IUIX_Item>(L"cb")), L"All files");
        // In the open list the user only browses; the choice at its closing counts, once.
        const HWND control = Control(L"cb");
        SendMessageW(control, CB_SHOWDROPDOWN, TRUE, 0);
        COMBOBOXINFO info{};
        info.cbSize = sizeof(info);
        GetComboBoxInfo(control, &info);
        const RECT list = PlaceOf(info.hwndList);
        EXPECT_GE(list.bottom - list.top, 3 * SendMessageW(control, CB_GETITEMHEIGHT, 0, 0));
        PressKey(L"Up");
        PressKey(L"Up");
        EXPECT_EQ(TakeEvents(), L"");
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"changed cb;") << "and Enter does not press the default button";
        combo->get_SelItem(&selected);
        EXPECT_EQ(selected, 0);
        SendMessageW(control, CB_SHOWDROPDOWN, TRUE, 0);
        PressKey(L"Esc");
        EXPECT_EQ(TakeEvents(), L"") << "Esc closes the list, not the dialog, and nothing has changed";
        EXPECT_EQ(combo->Clear(), S_OK);
        combo->get_SelItem(&selected);
        EXPECT_EQ(selected, -1);
        EXPECT_EQ(TakeEvents(), L"");
    });
    const RECT place = PlaceOf(Control(L"cb"));
    const RECT edit = PlaceOf(Control(L"ed"));
    EXPECT_EQ(place.bottom - place.top, edit.bottom - edit.top) << "closed it is as high as the layout says";
}

TEST_F(DialogItemTest, GivesTheKeyboardToTheFirstItemOrTheSinksChoice) {
    Use([&] { EXPECT_EQ(GetFocus(), Control(L"ed")); });
    Destroy();
    ASSERT_EQ(Create(layout), S_OK);
    m_sink->on_init = [this] { return Item<Qorv::IUIX_Item>(L"lst")->SetFocus(); };
    Use([&] {
        const auto list = Item<Qorv::IUIX_Item>(L"lst");
        VARIANT_BOOL has_focus = VARIANT_FALSE;
        EXPECT_EQ(list->get_HasFocus(&has_focus), S_OK);
        EXPECT_EQ(has_focus, VARIANT_TRUE);
        // A disabled item passes the focus on.
        EXPECT_EQ(list->put_IsEnabled(VARIANT_FALSE), S_OK);
        EXPECT_EQ(FocusedText(), L"Other");
        list->get_HasFocus(&has_focus);
        EXPECT_EQ(has_focus, VARIANT_FALSE);
        EXPECT_EQ(list->put_IsEnabled(VARIANT_TRUE), S_OK);
    });
    m_sink->on_init = nullptr;
}

TEST_F(DialogItemTest, CommandBarStandsBesideAnItemAndIsUsedByKeys) {
    ASSERT_EQ(AddBar(L"bar", L"ed"), S_OK);
    EXPECT_EQ(AddBar(L"bar", L"ed"), E_INVALIDARG) << "the id is taken";
    EXPECT_EQ(AddBar(L"bar2", L"none"), E_INVALIDARG);
    ASSERT_NE(Item<Qorv::IUIX_CommandBar>(L"bar"), nullptr);
    m_bar = Item<Qorv::IUIX_CommandBar>(L"bar");
    Use([&] {
        const RECT bar = PlaceOf(Control(L"bar"));
        const RECT edit = PlaceOf(Control(L"ed"));
        EXPECT_EQ(bar.right - edit.left, DevHost::Scale::OfScreen().Pixels(140)) << "both in the place of one";
        EXPECT_LT(edit.right, bar.left);
        EXPECT_EQ(GetFocus(), Control(L"ed"));
        PressKey(L"Tab");
        EXPECT_EQ(FocusedText(), L"New folder") << "the first that can be pressed, behind the item beside";
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"command bar 2;");
        PressKey(L"Right");
        EXPECT_EQ(FocusedText(), L"Refresh") << "not the separator, nor what is disabled";
        PressKey(L"Space");
        EXPECT_EQ(TakeEvents(), L"command bar 4;");
        PressKey(L"Tab");
        EXPECT_EQ(GetFocus(), Control(L"cb")) << "one stop for the whole bar";
        PressKey(L"Shift+Tab");
        EXPECT_EQ(FocusedText(), L"Refresh");
        // A disabled button passes the focus on, and another one becomes the bar's Tab stop.
        EXPECT_EQ(m_bar->put_IsCommandEnabled(4, VARIANT_FALSE), S_OK);
        EXPECT_NE(FocusedText(), L"Refresh");
        EXPECT_NE(GetFocus(), nullptr);
        EXPECT_EQ(m_bar->put_IsCommandEnabled(2, VARIANT_FALSE), S_OK);
        EXPECT_EQ(m_bar->put_IsCommandEnabled(3, VARIANT_TRUE), S_OK);
        Item<Qorv::IUIX_Item>(L"ed")->SetFocus();
        PressKey(L"Tab");
        EXPECT_EQ(FocusedText(), L"Delete");
        EXPECT_FALSE(DevHost::PressButton(m_sink->Window(), L"Refresh"));
        EXPECT_TRUE(DevHost::PressButton(m_sink->Window(), L"Delete"));
        EXPECT_EQ(TakeEvents(), L"command bar 3;");
        EXPECT_EQ(m_bar->put_IsCommandEnabled(5, VARIANT_TRUE), E_INVALIDARG);
        EXPECT_EQ(m_bar->put_IsCommandEnabled(0, VARIANT_TRUE), E_INVALIDARG);
    });
}

TEST_F(DialogItemTest, RefusesCommandsThatCannotBeShown) {
    const auto image = Image(L"ico.delete");
    const auto empty_image = [&] {
        ComPtr<Qorv::IUIX_Image> made;
        m_ui->CreateImage(nullptr, 0, &made);
        return made;
    }();
    const Qorv::UIX_Command refused[] = {{1, L"no picture"}, {1, L"empty picture", empty_image}, {-1, L"id", image}};
    for (const Qorv::UIX_Command& command : refused)
        EXPECT_EQ(m_sink->dialog->AddCommandBar(L"bar", L"lb", &command, 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(m_sink->dialog->AddCommandBar(L"bar", L"lb", nullptr, 1, nullptr), E_POINTER);
    ComPtr<Qorv::IUIX_Image> unknown;
    EXPECT_EQ(m_ui->GetImage(L"ico.nothing", &unknown), E_INVALIDARG);
    EXPECT_EQ(m_ui->GetImage(nullptr, &unknown), E_POINTER);
    Destroy();
    EXPECT_EQ(Create(R"(<picture id="p" x="0" y="0" width="9" height="9" image="ico.nothing"/>)"), E_INVALIDARG);
}

TEST_F(DialogItemTest, PassesThePluginsOwnMessagesOn) {
    Use([&] {
        PostMessageW(m_sink->Window(), WM_APP + 5, 1, 2);
        PostMessageW(m_sink->Window(), 0xBFFF, 3, 4);
        PostMessageW(m_sink->Window(), WM_APP - 1, 5, 6); // Not one of them.
        EXPECT_EQ(TakeEvents(), L"message 32773 1 2;message 49151 3 4;");
    });
}

TEST_F(DialogItemTest, MenuAnswersWithTheChosenCommand) {
    const Qorv::UIX_Command commands[] = {
        {7, L"&Up\tBackspace"}, {}, {8, L"Delete", nullptr, VARIANT_FALSE}, {9, L"Refresh"}};
    const struct {
        const char* name;
        const wchar_t* choice;
        LONG answer;
    } cases[] = {{"first", L"Up", 7}, {"behind a separator", L"Refresh", 9}, {"none", nullptr, 0}};
    for (const auto& row : cases) {
        Use([&] {
            const OnceInUse choose([&](HWND i_window) {
                return row.choice != nullptr ? DevHost::ChooseCommand(i_window, row.choice) : EndMenu() != FALSE;
            });
            LONG answer = -1;
            EXPECT_EQ(m_ui->ShowMenu(m_sink->Window(), {10, 10}, commands, ULONG{std::size(commands)}, &answer), S_OK);
            EXPECT_EQ(answer, row.answer) << row.name;
        });
    }
    LONG answer = -1;
    EXPECT_EQ(m_ui->ShowMenu(nullptr, {}, commands, 1, &answer), E_INVALIDARG);
    EXPECT_EQ(m_ui->ShowMenu(m_sink->Window(), {}, commands, 0, &answer), E_INVALIDARG);
    EXPECT_EQ(m_ui->ShowMenu(m_sink->Window(), {}, commands, 1, nullptr), E_POINTER);
}

TEST_F(DialogItemTest, ACommandBarEndsWhereTheItemsEnd) {
    ASSERT_EQ(AddBar(L"bar", L"lb"), S_OK);
    Use([&] {
        EXPECT_EQ(PlaceOf(Control(L"bar")).right, PlaceOf(Control(L"cb")).right);
        EXPECT_LT(PlaceOf(Control(L"lb")).right, PlaceOf(Control(L"bar")).left);
    });
}

TEST_F(DialogItemTest, TellsScreenReadersNamesAndRoles) {
    ASSERT_EQ(AddBar(L"bar", L"lb"), S_OK);
    const auto accessible = [this](Qorv::PCStr i_id) {
        ComPtr<IAccessible> object;
        EXPECT_EQ(AccessibleObjectFromWindow(Control(i_id), static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                             reinterpret_cast<void**>(&object)),
                  S_OK);
        return object;
    };
    const auto name_of = [&](Qorv::PCStr i_id) {
        const Qorv::Variant self(LONG{CHILDID_SELF});
        Qorv::Bstr name;
        EXPECT_EQ(accessible(i_id)->get_accName(self, &name), S_OK);
        return std::wstring(name.View());
    };
    const struct {
        const wchar_t* id;
        const wchar_t* name;
        LONG role;
    } cases[] = {
        {L"pic", L"Picture", ROLE_SYSTEM_GRAPHIC},  {L"lb", L"Label:", ROLE_SYSTEM_STATICTEXT},
        {L"ed", L"Label", ROLE_SYSTEM_TEXT},        {L"cb", L"Types", ROLE_SYSTEM_COMBOBOX},
        {L"lst", L"Files", ROLE_SYSTEM_LIST},       {L"btn.other", L"Other", ROLE_SYSTEM_PUSHBUTTON},
        {L"btn.ok", L"OK", ROLE_SYSTEM_PUSHBUTTON}, {L"bar", L"Tool bar", ROLE_SYSTEM_TOOLBAR},
    };
    Use([&] {
        for (const auto& test : cases) {
            EXPECT_EQ(name_of(test.id), test.name);
            Qorv::Variant role;
            EXPECT_EQ(accessible(test.id)->get_accRole(Qorv::Variant(LONG{CHILDID_SELF}), &role), S_OK);
            EXPECT_EQ(role->lVal, test.role) << DevHost::ToUtf8(test.name);
        }
        EXPECT_EQ(Item<Qorv::IUIX_Item>(L"lb")->put_Text(L"&Folder:"), S_OK);
        EXPECT_EQ(name_of(L"ed"), L"Folder") << "as the label is now";
        EXPECT_EQ(Item<Qorv::IUIX_Item>(L"btn.ok")->put_Text(L"&Choose"), S_OK);
        EXPECT_EQ(name_of(L"btn.ok"), L"Choose");
    });
}

} // namespace
} // namespace Tests
