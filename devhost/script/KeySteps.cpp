#include "script/KeySteps.h"

#include "base/Failure.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace DevHost {
namespace {

struct Key {
    std::wstring_view name;
    BYTE code;
};

constexpr Key modifiers[] = {{L"Shift", VK_SHIFT}, {L"Ctrl", VK_CONTROL}, {L"Alt", VK_MENU}};

constexpr Key keys[] = {
    {L"Tab", VK_TAB},        {L"Enter", VK_RETURN},  {L"Esc", VK_ESCAPE}, {L"Space", VK_SPACE},
    {L"Backspace", VK_BACK}, {L"Delete", VK_DELETE}, {L"Up", VK_UP},      {L"Down", VK_DOWN},
    {L"Left", VK_LEFT},      {L"Right", VK_RIGHT},   {L"Home", VK_HOME},  {L"End", VK_END},
    {L"PageUp", VK_PRIOR},   {L"PageDown", VK_NEXT}, {L"F2", VK_F2},      {L"F4", VK_F4},
    {L"F5", VK_F5},          {L"F10", VK_F10},
};

using KeyboardState = std::array<BYTE, 256>;
constexpr BYTE is_down = 0x80;

BYTE KeyCode(const std::wstring& i_name) {
    if (const auto found = std::ranges::find(keys, i_name, &Key::name); found != std::end(keys))
        return found->code;
    const wchar_t character = i_name.size() == 1 ? i_name.front() : L'\0';
    if ((character >= L'A' && character <= L'Z') || (character >= L'0' && character <= L'9'))
        return static_cast<BYTE>(character);
    throw Failure(E_INVALIDARG, L"There is no key \"" + i_name + L"\"");
}

BYTE ModifierCode(const std::wstring& i_name) {
    const auto found = std::ranges::find(modifiers, i_name, &Key::name);
    if (found == std::end(modifiers))
        throw Failure(E_INVALIDARG, L"There is no modifier key \"" + i_name + L"\"");
    return found->code;
}

HWND TargetIn(HWND i_window) {
    if (GetFocus() == nullptr)
        SetActiveWindow(i_window); // Another program is active. The window restores the focus to its control.
    const HWND focus = GetFocus();
    return focus != nullptr && (focus == i_window || IsChild(i_window, focus)) ? focus : i_window;
}

} // namespace

bool PressKey(HWND i_window, const std::wstring& i_name) {
    KeyboardState state{};
    GetKeyboardState(state.data());
    std::wistringstream parts(i_name);
    std::wstring part;
    std::getline(parts, part, L'+');
    for (std::wstring next; std::getline(parts, next, L'+'); part = next)
        state[ModifierCode(part)] = is_down;
    const BYTE code = KeyCode(part);
    SetKeyboardState(state.data());
    // The system sends F10, and keys pressed with Alt alone, as different messages, with a bit for Alt.
    const bool has_alt = state[VK_MENU] == is_down && state[VK_CONTROL] != is_down;
    const bool is_system_key = has_alt || code == VK_F10;
    constexpr LPARAM once = 1;
    constexpr LPARAM with_alt = LPARAM{1} << 29;
    constexpr LPARAM was_down_and_goes_up = LPARAM{3} << 30;
    const LPARAM context = has_alt ? once | with_alt : once;
    const HWND target = TargetIn(i_window);
    PostMessageW(target, is_system_key ? WM_SYSKEYDOWN : WM_KEYDOWN, code, context);
    PostMessageW(target, is_system_key ? WM_SYSKEYUP : WM_KEYUP, code, context | was_down_and_goes_up);
    return true;
}

bool TypeText(HWND i_window, const std::wstring& i_text) {
    const HWND target = TargetIn(i_window);
    for (const wchar_t character : i_text)
        PostMessageW(target, WM_CHAR, character, 1);
    return true;
}

void ReleaseModifiers() noexcept {
    KeyboardState state{};
    GetKeyboardState(state.data());
    const bool are_down =
        std::ranges::any_of(modifiers, [&](const Key& i_key) { return (state[i_key.code] & is_down) != 0; });
    if (!are_down)
        return;
    for (const Key& modifier : modifiers)
        state[modifier.code] = 0;
    SetKeyboardState(state.data());
}

} // namespace DevHost
