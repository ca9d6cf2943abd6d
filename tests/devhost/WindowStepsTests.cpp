// Window scripts: what their steps do to the system's own controls, seen from inside a window.

#include "script/WindowScript.h"
#include "support/TemporaryFolder.h"
#include "uix/ControlName.h"
#include "uix/DialogWindow.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace Tests {
namespace {

using DevHost::LoopMonitors;

constexpr const wchar_t* rows[] = {L"../", L"Documents", L"a.pdf", L"b.pdf", L"c.pdf"};
constexpr int row_count = int{std::size(rows)};

/// A dialog with a list, a combo, an edit box and a button, which records what happens to them.
class Controls final : public DevHost::DialogWindow {
public:
    Controls() : DialogWindow(nullptr, WS_POPUP | WS_CAPTION | WS_SYSMENU, 0, L"Controls", {420, 300}) {
        m_list = Add(L"SysListView32", L"list", LVS_REPORT | LVS_OWNERDATA | LVS_EDITLABELS | LVS_SHOWSELALWAYS,
                     {0, 0, 400, 150});
        for (const wchar_t* title : {L"Name", L"Size"}) {
            LVCOLUMNW column{};
            column.mask = LVCF_TEXT | LVCF_WIDTH;
            column.cx = 150;
            column.pszText = const_cast<wchar_t*>(title);
            SendMessageW(m_list, LVM_INSERTCOLUMNW, 2, reinterpret_cast<LPARAM>(&column));
        }
        SendMessageW(m_list, LVM_SETITEMCOUNT, row_count, 0);
        m_combo = Add(L"COMBOBOX", L"combo", CBS_DROPDOWNLIST, {0, 160, 200, 200});
        for (const wchar_t* text : {L"PDF files", L"Pictures", L"All files"})
            SendMessageW(m_combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        m_edit = Add(L"EDIT", L"edit", ES_AUTOHSCROLL, {0, 200, 200, 20});
        Add(L"BUTTON", L"button", BS_PUSHBUTTON, {0, 230, 100, 24});
    }
    ~Controls() { Destroy(); }

    /// Runs the dialog, which the script closes, and returns what happened.
    std::wstring Use(const std::string& i_steps) {
        WriteBytes(m_folder.Path() / "steps", i_steps + "close\n");
        const DevHost::WindowScript script(m_folder.Path() / "steps", 3000);
        LoopMonitors monitors;
        LONG result = 0;
        RunModal(monitors, result);
        EXPECT_FALSE(script.HasFailed());
        EXPECT_TRUE(script.IsDone());
        return m_events;
    }

    std::wstring Selection() const {
        std::wstring selection;
        for (int row = -1; (row = static_cast<int>(
                                SendMessageW(m_list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED))) >= 0;)
            selection += std::wstring(rows[row]) + L";";
        return selection;
    }

private:
    HWND Add(const wchar_t* i_class, const wchar_t* i_name, DWORD i_style, const RECT& i_place) {
        const HWND control = CreateWindowExW(
            0, i_class, i_name, i_style | WS_CHILD | WS_VISIBLE | WS_TABSTOP, static_cast<int>(i_place.left),
            static_cast<int>(i_place.top), static_cast<int>(i_place.right), static_cast<int>(i_place.bottom), Window(),
            reinterpret_cast<HMENU>(UINT_PTR{m_next_id++}), GetModuleHandleW(nullptr), nullptr);
        DevHost::SetControlName(control, i_name);
        return control;
    }

    void Note(const std::wstring& i_event) { m_events += i_event + L";"; }

    void OnCommand(WORD i_control_id, WORD i_notification) override {
        if (i_control_id == GetDlgCtrlID(m_combo) && i_notification == CBN_SELCHANGE)
            Note(L"combo " + std::to_wstring(SendMessageW(m_combo, CB_GETCURSEL, 0, 0)));
        else if (i_control_id == GetDlgCtrlID(m_edit) && i_notification == EN_SETFOCUS)
            Note(L"edit focused");
        else if (i_control_id > GetDlgCtrlID(m_edit) && i_notification == BN_CLICKED)
            Note(L"button");
    }

    std::optional<LRESULT> OnMessage(UINT i_message, WPARAM, LPARAM i_lparam) override {
        if (i_message == WM_NOTIFY)
            return OnNotify(reinterpret_cast<NMHDR*>(i_lparam));
        if (i_message != WM_CONTEXTMENU)
            return std::nullopt;
        const HMENU menu = CreatePopupMenu();
        AppendMenuW(menu, MF_STRING, 1, L"&Up\tBackspace");
        AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(menu, MF_STRING | MF_GRAYED, 2, L"Rename");
        AppendMenuW(menu, MF_STRING, 3, L"Delete");
        Note(L"command " + std::to_wstring(TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, Window(), nullptr)));
        DestroyMenu(menu);
        return 0;
    }

    std::optional<LRESULT> OnNotify(NMHDR* i_header) {
        switch (i_header->code) {
        case LVN_GETDISPINFOW: {
            LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(i_header)->item;
            if ((item.mask & LVIF_TEXT) != 0)
                item.pszText = const_cast<wchar_t*>(item.iSubItem == 0 ? rows[item.iItem] : L"12 KB");
            return 0;
        }
        case LVN_COLUMNCLICK:
            Note(L"column " + std::to_wstring(reinterpret_cast<NMLISTVIEW*>(i_header)->iSubItem));
            return 0;
        case NM_DBLCLK:
            Note(L"opened " + std::wstring(rows[reinterpret_cast<NMITEMACTIVATE*>(i_header)->iItem]));
            MessageBoxW(Window(), L"Inside", L"Opened", MB_OK); // An action may open another window.
            return 0;
        case LVN_KEYDOWN:
            NoteKey(reinterpret_cast<NMLVKEYDOWN*>(i_header)->wVKey);
            return 0;
        case LVN_ENDLABELEDITW: {
            const wchar_t* const text = reinterpret_cast<NMLVDISPINFOW*>(i_header)->item.pszText;
            Note(std::wstring(L"edited ") + (text != nullptr ? text : L"(nothing)"));
            return FALSE;
        }
        default:
            return std::nullopt;
        }
    }

    void NoteKey(WORD i_key) {
        std::wstring text = L"key ";
        for (const auto& [code, name] : {std::pair(VK_SHIFT, L"Shift+"), {VK_CONTROL, L"Ctrl+"}, {VK_MENU, L"Alt+"}})
            text += GetKeyState(code) < 0 ? name : L"";
        Note(text + std::to_wstring(i_key));
        if (i_key == VK_F2)
            SendMessageW(m_list, LVM_EDITLABEL, 2, 0);
    }

    TemporaryFolder m_folder;
    WORD m_next_id = 100;
    HWND m_list = nullptr;
    HWND m_combo = nullptr;
    HWND m_edit = nullptr;
    std::wstring m_events;
};

TEST(WindowStepsTest, UsesTheSystemsControls) {
    const struct {
        const char* name;
        const char* steps;
        const wchar_t* events;
        const wchar_t* selection;
    } cases[] = {
        {"a row", "row b.pdf\n", L"", L"b.pdf;"},
        {"more rows", "row c.pdf\nadd a.pdf\nadd ../\nadd c.pdf\n", L"", L"../;a.pdf;"},
        {"a row opened, into another window", "open Documents\nwindow Opened\nkey Enter\nwindow Controls\n",
         L"opened Documents;", L"Documents;"},
        {"columns", "column Size\ncolumn Name\n", L"column 1;column 0;", L""},
        {"an item of a combo", "choose combo All files\nchoose combo PDF files\n", L"combo 2;combo 0;", L""},
        {"keys with others down", "row a.pdf\nfocus list\nkey Shift+Down Shift+Down Ctrl+1 Up\n",
         L"key Shift+40;key Shift+40;key Ctrl+49;key 38;", L"b.pdf;"},
        {"a row's text", "focus list\nkey F2\nedit New name.pdf\nkey Enter\n", L"key 113;edited New name.pdf;",
         L"a.pdf;"},
        {"the list's menu", "menu Delete\nmenu Up\n", L"command 3;command 1;", L""},
        {"a button with the keyboard", "focus edit\nkey Tab Space Shift+Tab\n", L"edit focused;button;edit focused;",
         L""},
        {"typing",
         "focus edit\nkey Ctrl+Home Shift+End\ntype Report.pdf\ntext Report.pdf\nkey Home Delete Delete\n"
         "text port.pdf\ngone Report\n",
         L"edit focused;", L""},
        {"texts of rows", "text cuments\ntext 12 KB\ngone 13 KB\n", L"", L""},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Controls controls;
        EXPECT_EQ(controls.Use(row.steps), row.events);
        EXPECT_EQ(controls.Selection(), row.selection);
    }
}

TEST(WindowStepsTest, EndsAllWindowsWhenAStepCannotBeDone) {
    const TemporaryFolder folder;
    for (const char* steps : {"row x.pdf", "menu Rename", "key Hyper+A", "key F99", "choose combo Nothing",
                              "open a.pdf\nwindow Opened\npress Nothing"}) {
        SCOPED_TRACE(steps);
        WriteBytes(folder.Path() / "steps", steps);
        Controls controls;
        LoopMonitors monitors;
        const DevHost::WindowScript script(folder.Path() / "steps", 200);
        LONG result = 0;
        controls.RunModal(monitors, result);
        EXPECT_TRUE(script.HasFailed());
    }
}

} // namespace
} // namespace Tests
