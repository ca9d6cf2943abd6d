#include "uix/WindowSteps.h"

#include "services/Failure.h"
#include "services/Unicode.h"
#include "uix/ControlName.h"
#include "uix/WindowPicture.h"
#include "uix/WindowText.h"

#include <algorithm>
#include <array>
#include <functional>
#include <sstream>

namespace DevHost {
namespace {

using Accepts = std::function<bool(HWND)>;

struct Search {
    const Accepts& accepts;
    HWND found = nullptr;
};

BOOL CALLBACK Look(HWND i_window, LPARAM i_search) {
    auto* const search = reinterpret_cast<Search*>(i_search);
    if (IsWindowVisible(i_window) && search->accepts(i_window))
        search->found = i_window;
    return search->found == nullptr;
}

HWND FindChild(HWND i_window, const Accepts& i_accepts) {
    Search search{i_accepts};
    EnumChildWindows(i_window, Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool HasClass(HWND i_window, std::wstring_view i_class) {
    std::array<wchar_t, 64> name{};
    const int length = GetClassNameW(i_window, name.data(), int{name.size()});
    return EqualIgnoringCase({name.data(), static_cast<size_t>(length)}, i_class);
}

/// A caption as a person reads it: "&" only marks a letter.
std::wstring ReadableCaption(HWND i_window) {
    std::wstring caption;
    const std::wstring text = WindowText(i_window);
    for (size_t index = 0; index < text.size(); ++index) {
        if (text[index] == L'&' && index + 1 < text.size())
            ++index;
        caption += text[index];
    }
    return caption;
}

struct Key {
    const wchar_t* name;
    WPARAM code;
};

constexpr Key keys[] = {
    {L"Tab", VK_TAB},        {L"Enter", VK_RETURN},  {L"Esc", VK_ESCAPE}, {L"Space", VK_SPACE},
    {L"Backspace", VK_BACK}, {L"Delete", VK_DELETE}, {L"Up", VK_UP},      {L"Down", VK_DOWN},
    {L"Left", VK_LEFT},      {L"Right", VK_RIGHT},   {L"Home", VK_HOME},  {L"End", VK_END},
    {L"PageUp", VK_PRIOR},   {L"PageDown", VK_NEXT}, {L"F5", VK_F5},
};

WPARAM KeyCode(const std::wstring& i_name) {
    for (const Key& key : keys)
        if (i_name == key.name)
            return key.code;
    throw Failure(E_INVALIDARG, L"There is no key \"" + i_name + L"\"");
}

} // namespace

HWND WindowInUse() {
    const Accepts is_usable = [](HWND i_window) {
        RECT place;
        return IsWindowEnabled(i_window) && GetWindowRect(i_window, &place) && !IsRectEmpty(&place);
    };
    Search search{is_usable};
    EnumThreadWindows(GetCurrentThreadId(), Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool WaitForTitle(HWND i_window, const std::wstring& i_title) {
    return WindowText(i_window).find(i_title) != std::wstring::npos;
}

bool WaitForText(HWND i_window, const std::wstring& i_text) {
    return FindChild(i_window, [&](HWND i_child) { return WindowText(i_child).find(i_text) != std::wstring::npos; }) !=
           nullptr;
}

bool WaitForPage(HWND i_window, const std::wstring& i_address) {
    return FindChild(i_window, [&](HWND i_child) {
               return HasClass(i_child, L"QorvHostPage") && WindowText(i_child).starts_with(i_address);
           }) != nullptr;
}

bool FillField(HWND i_window, const std::wstring& i_name_and_text) {
    const size_t blank = std::min(i_name_and_text.find(L' '), i_name_and_text.size());
    const HWND field = FindControl(i_window, i_name_and_text.substr(0, blank));
    if (field == nullptr || !IsWindowEnabled(field))
        return false;
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
    SendMessageW(field, WM_CLEAR, 0, 0);
    for (const wchar_t character : i_name_and_text.substr(std::min(blank + 1, i_name_and_text.size())))
        SendMessageW(field, WM_CHAR, character, 1);
    return true;
}

bool PressButton(HWND i_window, const std::wstring& i_caption) {
    HWND button = FindControl(i_window, i_caption);
    if (button == nullptr)
        button = FindChild(i_window, [&](HWND i_child) {
            return HasClass(i_child, L"Button") && ReadableCaption(i_child) == i_caption;
        });
    if (button == nullptr || !IsWindowEnabled(button))
        return false;
    SetFocus(button);
    PostMessageW(button, BM_CLICK, 0, 0);
    return true;
}

bool PressKeys(HWND i_window, const std::wstring& i_names) {
    const HWND focus = GetFocus();
    const HWND target = focus != nullptr && (focus == i_window || IsChild(i_window, focus)) ? focus : i_window;
    std::wistringstream names(i_names);
    for (std::wstring name; names >> name;)
        PostMessageW(target, WM_KEYDOWN, KeyCode(name), 1);
    return true;
}

bool CloseByBox(HWND i_window, const std::wstring& /*i_nothing*/) {
    return PostMessageW(i_window, WM_SYSCOMMAND, SC_CLOSE, 0) != FALSE;
}

bool TakePicture(HWND i_window, const std::wstring& i_path) {
    SaveWindowPicture(i_window, i_path);
    return true;
}

} // namespace DevHost
