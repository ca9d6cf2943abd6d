// The list of a dialog: rows from a source, selection, type-ahead, editing in place, and what it reports about the
// user.

#include "DialogTest.h"
#include "qorv/Values.h"
#include "script/KeySteps.h"
#include "script/ListSteps.h"
#include "uix/List.h"

#include <commctrl.h>

#include <algorithm>

namespace Tests {
namespace {

using Qorv::ComPtr;

constexpr char layout[] = R"(<list id="lst" x="8" y="8" width="280" height="140" style="#00000400"/>
    <button id="btn.ok" x="8" y="8" width="90" height="24" fixed="true" text="OK"/>)";

/// Rows with their number as text; counts the requests.
class Rows final : public Qorv::CoClass<Rows, Qorv::IUIX_ListSource> {
public:
    HRESULT STDMETHODCALLTYPE GetCellText(LONG i_row, LONG i_column, BSTR* o_text) noexcept override {
        ++asked_cells;
        last_asked_row = std::max(last_asked_row, i_row);
        *o_text = Qorv::Bstr(i_column == 0 ? TextOf(i_row) : L"second").Detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetRowImage(LONG i_row, Qorv::IUIX_Image** o_image) noexcept override {
        *o_image = nullptr;
        if (i_row % 2 == 0 && image != nullptr)
            image.CopyTo(o_image);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FindRow(Qorv::PCStr i_text, LONG i_first_row, LONG* o_row) noexcept override {
        *o_row = -1;
        for (LONG step = 0; step < count && *o_row == -1; ++step)
            if (const LONG row = (i_first_row + step) % count; TextOf(row).starts_with(i_text))
                *o_row = row;
        return S_OK;
    }

    static std::wstring TextOf(LONG i_row) { return std::to_wstring(i_row); }

    LONG count = 0;
    LONG asked_cells = 0;
    LONG last_asked_row = -1;
    ComPtr<Qorv::IUIX_Image> image;
};

class ListTest : public DialogTest {
protected:
    void SetUp() override {
        ASSERT_EQ(Create(layout), S_OK);
        m_list = Item<Qorv::IUIX_List>(L"lst");
        m_list->AddColumn(L"First", 150, Qorv::UIX_Alignment_Left);
        m_list->AddColumn(L"Second", 80, Qorv::UIX_Alignment_Right);
        m_list->put_Source(m_rows);
        Fill(10);
    }

    void TearDown() override {
        if (m_sink->dialog != nullptr)
            Destroy();
        m_list.Reset();
        m_rows.Reset();
        DialogTest::TearDown();
    }

    void Fill(LONG i_count) {
        m_rows->count = i_count;
        EXPECT_EQ(m_list->put_RowCount(i_count), S_OK);
    }

    std::wstring Selected() {
        std::wstring selected;
        LONG row = -1;
        while (SUCCEEDED(m_list->GetNextSelected(row, &row)) && row != -1)
            selected += std::to_wstring(row) + L";";
        return selected;
    }

    LONG Focused() {
        LONG row = -2;
        m_list->get_FocusedRow(&row);
        return row;
    }

    void Click(const std::wstring& i_row) {
        EXPECT_TRUE(DevHost::ClickRow(m_sink->Window(), i_row));
        Pump();
    }

    void PressKey(const std::wstring& i_name) {
        DevHost::PressKey(m_sink->Window(), i_name);
        Pump();
        DevHost::ReleaseModifiers();
    }

    std::optional<std::wstring> EditedText() {
        Qorv::Bstr text;
        return m_list->get_EditedText(&text) == S_OK ? std::optional<std::wstring>(text.View()) : std::nullopt;
    }

    HWND LabelEdit() { return reinterpret_cast<HWND>(SendMessageW(Control(L"lst"), LVM_GETEDITCONTROL, 0, 0)); }

    ComPtr<Rows> m_rows = Qorv::Create<Rows>();
    ComPtr<Qorv::IUIX_List> m_list;
};

/// The control may ask for a second cell while it still shows the first one.
TEST_F(ListTest, CopiesCellsIntoTheControlsBuffer) {
    Use([&] {
        const auto ask = [&](int i_row, int i_column, wchar_t* o_text, int i_size) {
            NMLVDISPINFOW request{};
            request.hdr = {Control(L"lst"), static_cast<UINT_PTR>(GetDlgCtrlID(Control(L"lst"))), LVN_GETDISPINFOW};
            request.item.mask = LVIF_TEXT;
            request.item.iItem = i_row;
            request.item.iSubItem = i_column;
            request.item.pszText = o_text;
            request.item.cchTextMax = i_size;
            SendMessageW(m_sink->Window(), WM_NOTIFY, request.hdr.idFrom, reinterpret_cast<LPARAM>(&request));
            return request.item.pszText;
        };
        wchar_t first[8] = L"";
        wchar_t second[4] = L"";
        EXPECT_EQ(ask(7, 0, first, 8), first);
        EXPECT_EQ(ask(7, 1, second, 4), second);
        EXPECT_STREQ(first, L"7");
        EXPECT_STREQ(second, L"sec") << "cut where the buffer ends";
    });
}

TEST_F(ListTest, AsksOnlyForTheRowsThatItShows) {
    constexpr LONG many = 100'000;
    constexpr LONG some = 1'000; // A few times the visible cells.
    EXPECT_EQ(m_ui->GetImage(L"ico.folder", &m_rows->image), S_OK);
    Fill(many);
    Use([&] {
        Pump();
        EXPECT_GT(m_rows->asked_cells, 0);
        EXPECT_LT(m_rows->asked_cells, some);
        EXPECT_EQ(m_list->put_FocusedRow(many - 1), S_OK);
        Pump();
        EXPECT_EQ(m_rows->last_asked_row, many - 1);
        EXPECT_EQ(m_list->SelectRow(-1, VARIANT_TRUE), S_OK);
        LONG row = 0;
        EXPECT_EQ(m_list->GetNextSelected(many - 2, &row), S_OK);
        EXPECT_EQ(row, many - 1);
        EXPECT_EQ(m_list->SelectRow(-1, VARIANT_FALSE), S_OK);
        EXPECT_EQ(Selected(), L"");
        Fill(many);
        Pump();
        EXPECT_LT(m_rows->asked_cells, 3 * some);
        // A column is fitted to its visible cells.
        const auto header = reinterpret_cast<HWND>(SendMessageW(Control(L"lst"), LVM_GETHEADER, 0, 0));
        NMHEADERW double_click{};
        double_click.hdr = {header, 0, static_cast<UINT>(HDN_DIVIDERDBLCLICKW)};
        SendMessageW(Control(L"lst"), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&double_click));
        Pump();
        EXPECT_LT(SendMessageW(Control(L"lst"), LVM_GETCOLUMNWIDTH, 0, 0), 100);
        EXPECT_LT(m_rows->asked_cells, 4 * some);
        // One picture for all its rows.
        const LRESULT images = SendMessageW(Control(L"lst"), LVM_GETIMAGELIST, LVSIL_SMALL, 0);
        EXPECT_EQ(ImageList_GetImageCount(reinterpret_cast<HIMAGELIST>(images)), 1);
        EXPECT_EQ(TakeEvents(), L"") << "what the plug-in does isn't an event";
    });
}

TEST_F(ListTest, TakesRowsAndSelectionFromThePlugin) {
    EXPECT_EQ(m_list->SelectRow(3, VARIANT_TRUE), S_OK);
    EXPECT_EQ(m_list->SelectRow(7, VARIANT_TRUE), S_OK);
    EXPECT_EQ(m_list->put_FocusedRow(5), S_OK);
    EXPECT_EQ(Selected(), L"3;7;");
    EXPECT_EQ(Focused(), 5);
    // Different rows: no state of the old ones is left.
    Fill(8);
    EXPECT_EQ(Selected(), L"");
    EXPECT_EQ(Focused(), -1);
    // Without multiple selection, only the last selected row counts; selected rows stay selected.
    m_list->SelectRow(1, VARIANT_TRUE);
    EXPECT_EQ(m_list->put_IsMultiSelect(VARIANT_FALSE), S_OK);
    EXPECT_EQ(Selected(), L"1;");
    m_list->SelectRow(2, VARIANT_TRUE);
    EXPECT_EQ(Selected(), L"2;");
    const struct {
        const char* name;
        HRESULT result;
    } refused[] = {
        {"row behind the last", m_list->SelectRow(8, VARIANT_TRUE)},
        {"row before the first", m_list->SelectRow(-2, VARIANT_TRUE)},
        {"focus", m_list->put_FocusedRow(8)},
        {"edit", m_list->EditRow(-1, -1)},
        {"column", m_list->put_SortMark(2, VARIANT_FALSE)},
        {"count", m_list->put_RowCount(-1)},
        {"width", m_list->AddColumn(L"", 0, Qorv::UIX_Alignment_Left)},
    };
    for (const auto& row : refused)
        EXPECT_EQ(row.result, E_INVALIDARG) << row.name;
}

TEST_F(ListTest, TellsOfEachSelectionOnce) {
    Fill(1'000);
    Use([&] {
        Click(L"2");
        EXPECT_EQ(TakeEvents(), L"selection lst;");
        EXPECT_EQ(Selected(), L"2;");
        PressKey(L"Down");
        EXPECT_EQ(TakeEvents(), L"selection lst;");
        PressKey(L"Shift+End");
        EXPECT_EQ(TakeEvents(), L"selection lst;") << "a thousand rows are one change";
        EXPECT_EQ(Focused(), 999);
        LONG row = 0;
        m_list->GetNextSelected(-1, &row);
        EXPECT_EQ(row, 3);
    });
}

TEST_F(ListTest, GoesToTheRowWhoseBeginningIsTyped) {
    Fill(1'000);
    Use([&] {
        PressKey(L"Home");
        TakeEvents();
        DevHost::TypeText(m_sink->Window(), L"75");
        EXPECT_EQ(TakeEvents(), L"selection lst;");
        EXPECT_EQ(Selected(), L"75;") << "not 7, nor 750";
        EXPECT_EQ(Focused(), 75);
    });
}

TEST_F(ListTest, ActivatesByEnterAndDoubleClick) {
    Use([&] {
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"click btn.ok;") << "without a row Enter is the default button's";
        PressKey(L"Down");
        EXPECT_EQ(TakeEvents(), L"selection lst;") << "the keyboard finds in";
        EXPECT_EQ(Selected(), L"0;");
        m_list->put_FocusedRow(4);
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"activated lst 4;");
        EXPECT_TRUE(DevHost::OpenRow(m_sink->Window(), L"3"));
        EXPECT_EQ(TakeEvents(), L"selection lst;activated lst 3;");
    });
}

TEST_F(ListTest, ForgetsWhatWasDoneToRowsThatAreGone) {
    Use([&] {
        m_list->put_FocusedRow(4);
        SendMessageW(Control(L"lst"), WM_KEYDOWN, VK_RETURN, 1);
        Fill(2); // A load ended before the sink was told.
        EXPECT_EQ(TakeEvents(), L"");
    });
}

TEST_F(ListTest, TellsOfColumnsAndMarksTheSortedOne) {
    Use([&] {
        EXPECT_TRUE(DevHost::ClickColumn(m_sink->Window(), L"Second"));
        EXPECT_EQ(TakeEvents(), L"column lst 1;");
        const auto mark = [&](int i_column) {
            HDITEMW item{};
            item.mask = HDI_FORMAT;
            const auto header = reinterpret_cast<HWND>(SendMessageW(Control(L"lst"), LVM_GETHEADER, 0, 0));
            SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i_column), reinterpret_cast<LPARAM>(&item));
            return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
        };
        m_list->put_SortMark(0, VARIANT_FALSE);
        EXPECT_EQ(mark(0), HDF_SORTUP);
        m_list->put_SortMark(1, VARIANT_TRUE);
        EXPECT_EQ(mark(0), 0);
        EXPECT_EQ(mark(1), HDF_SORTDOWN);
        m_list->put_SortMark(-1, VARIANT_FALSE);
        EXPECT_EQ(mark(1), 0);
    });
}

TEST_F(ListTest, EditsARowInPlace) {
    Use([&] {
        Click(L"2");
        Click(L"2"); // In many lists a second click edits; not in this one.
        PressKey(L"F2");
        EXPECT_EQ(LabelEdit(), nullptr);
        TakeEvents();

        EXPECT_EQ(m_list->EditRow(3, -1), S_OK);
        ASSERT_NE(LabelEdit(), nullptr);
        VARIANT_BOOL has_focus = VARIANT_TRUE;
        Item<Qorv::IUIX_Item>(L"lst")->get_HasFocus(&has_focus);
        EXPECT_EQ(has_focus, VARIANT_FALSE) << "keys are the edit's, not the list's";
        DevHost::TypeText(m_sink->Window(), L"other");
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"edited lst 3;");
        EXPECT_EQ(EditedText(), L"other");

        EXPECT_EQ(m_list->EditRow(4, -1), S_OK);
        DevHost::TypeText(m_sink->Window(), L"x");
        PressKey(L"Esc");
        EXPECT_EQ(TakeEvents(), L"edited lst 4;") << "Esc ends the editing, not the dialog";
        EXPECT_EQ(EditedText(), std::nullopt);

        EXPECT_EQ(m_list->EditRow(4, -1), S_OK);
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"edited lst 4;");
        EXPECT_EQ(EditedText(), L"4") << "the text pleased as it was";

        // Unchanged text counts too.
        EXPECT_EQ(m_list->EditRow(4, -1), S_OK);
        PressKey(L"Enter");
        EXPECT_EQ(TakeEvents(), L"edited lst 4;");
        EXPECT_EQ(EditedText(), L"4");

        // The focus moves away: what was typed counts.
        EXPECT_EQ(m_list->EditRow(5, -1), S_OK);
        DevHost::TypeText(m_sink->Window(), L"y");
        Pump();
        Item<Qorv::IUIX_Item>(L"btn.ok")->SetFocus();
        EXPECT_EQ(TakeEvents(), L"edited lst 5;");
        EXPECT_EQ(EditedText(), L"y");

        // Different rows: there is nothing left to edit.
        EXPECT_EQ(m_list->EditRow(5, -1), S_OK);
        Fill(3);
        EXPECT_EQ(LabelEdit(), nullptr);
        EXPECT_EQ(TakeEvents(), L"");
        EXPECT_EQ(m_list->EditRow(2, -1), S_OK) << "but again afterwards";
        EXPECT_NE(LabelEdit(), nullptr);
    });
}

TEST_F(ListTest, AsksForItsMenuWhereTheUserIs) {
    Use([&] {
        const HWND list = Control(L"lst");
        POINT place{};
        m_sink->on_event = [&](const ItemEvent& i_event) {
            place = {static_cast<short>(LOWORD(i_event.detail)), static_cast<short>(HIWORD(i_event.detail))};
            ScreenToClient(list, &place);
        };
        m_list->put_FocusedRow(2);
        RECT row{LVIR_BOUNDS, 0, 0, 0};
        SendMessageW(list, LVM_GETITEMRECT, 2, reinterpret_cast<LPARAM>(&row));
        PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
        EXPECT_EQ(TakeEvents(), L"menu lst;");
        EXPECT_EQ(place.y, row.bottom);
        EXPECT_TRUE(place.x > row.left && place.x < row.right);
        // The menu of a row scrolled out of sight is still visible.
        Fill(1'000);
        m_list->put_FocusedRow(0);
        SendMessageW(list, LVM_ENSUREVISIBLE, 900, FALSE);
        PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
        EXPECT_EQ(TakeEvents(), L"menu lst;");
        RECT client{};
        GetClientRect(list, &client);
        EXPECT_TRUE(PtInRect(&client, place));
        // By mouse: at the pointer.
        POINT mouse{30, 50};
        ClientToScreen(list, &mouse);
        PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(mouse.x, mouse.y));
        EXPECT_EQ(TakeEvents(), L"menu lst;");
        EXPECT_TRUE(place.x == 30 && place.y == 50);
    });
}

TEST_F(ListTest, SaysWhyItIsEmpty) {
    const auto dark_pixels = [&] {
        Pump();
        const HDC device = GetDC(Control(L"lst"));
        int count = 0;
        for (int y = 40; y < 80; ++y)
            for (int x = 20; x < 260; ++x)
                count += GetRValue(GetPixel(device, x, y)) < 128 ? 1 : 0;
        ReleaseDC(Control(L"lst"), device);
        return count;
    };
    Use([&] {
        Fill(0);
        EXPECT_EQ(dark_pixels(), 0);
        m_list->put_EmptyText(L"This folder is empty.");
        const int text_pixels = dark_pixels();
        EXPECT_GT(text_pixels, 50);
        InvalidateRect(Control(L"lst"), nullptr, FALSE);
        EXPECT_EQ(dark_pixels(), text_pixels) << "drawn again over itself";
        m_list->put_EmptyText(L"");
        EXPECT_EQ(dark_pixels(), 0);
        Fill(1);
        const int row_pixels = dark_pixels();
        m_list->put_EmptyText(L"This folder is empty.");
        EXPECT_GT(dark_pixels(), row_pixels + 50) << "beneath the row";
    });
}

TEST_F(ListTest, TakesNoInputWhileItIsBusy) {
    Use([&] {
        m_list->put_FocusedRow(1);
        m_list.As<Qorv::IUIX_Item>()->SetFocus();
        m_list->put_IsBusy(VARIANT_TRUE);
        EXPECT_TRUE(DevHost::IsListBusy(Control(L"lst")));
        EXPECT_FALSE(DevHost::ClickRow(m_sink->Window(), L"3"));
        SendMessageW(Control(L"lst"), WM_KEYDOWN, VK_DOWN, 1);
        LONG focused = -1;
        m_list->get_FocusedRow(&focused);
        EXPECT_EQ(focused, 1);
        EXPECT_EQ(GetFocus(), Control(L"lst"));
        m_list->put_IsBusy(VARIANT_FALSE);
        SendMessageW(Control(L"lst"), WM_KEYDOWN, VK_DOWN, 1);
        m_list->get_FocusedRow(&focused);
        EXPECT_EQ(focused, 2);
    });
}

TEST_F(ListTest, BeginsTypeAheadAnewForOtherRows) {
    Use([&] {
        m_list.As<Qorv::IUIX_Item>()->SetFocus();
        const auto focused_after = [&](wchar_t i_letter) {
            SendMessageW(Control(L"lst"), WM_CHAR, i_letter, 1);
            LONG focused = -1;
            m_list->get_FocusedRow(&focused);
            return focused;
        };
        EXPECT_EQ(focused_after(L'7'), 7);
        Fill(10);
        EXPECT_EQ(focused_after(L'4'), 4) << "not \"74\"";
    });
}

TEST_F(ListTest, MayBeDestroyedInItsOwnEvents) {
    for (const WPARAM key : {VK_RETURN, VK_DOWN}) {
        m_sink->on_event = [this](const ItemEvent&) { Destroy(); };
        const OnceInUse press([&](HWND) {
            m_list->put_FocusedRow(1);
            return Press(key);
        });
        EXPECT_EQ(Run(), closed);
        // The object outlives its window, and holds nothing that it no longer needs.
        LONG count = -1;
        EXPECT_EQ(m_list->get_RowCount(&count), E_UNEXPECTED);
        EXPECT_EQ(m_list->put_RowCount(1), E_UNEXPECTED);
        EXPECT_EQ(m_list.As<Qorv::IUIX_Item>()->SetFocus(), E_UNEXPECTED);
        m_rows->AddRef();
        EXPECT_EQ(m_rows->Release(), 1u);
        m_sink->on_event = nullptr;
        SetUp();
    }
}

TEST_F(ListTest, ColumnsHaveRoomForTheirHeads) {
    constexpr wchar_t title[] = L"A title that is wider than its column";
    ASSERT_EQ(m_list->AddColumn(title, 10, Qorv::UIX_Alignment_Left), S_OK);
    Use([&] {
        EXPECT_GT(ListView_GetColumnWidth(Control(L"lst"), 2), ListView_GetStringWidth(Control(L"lst"), title));
    });
}

} // namespace
} // namespace Tests
