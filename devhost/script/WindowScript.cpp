#include "script/WindowScript.h"

#include "base/Failure.h"
#include "base/LocalFile.h"
#include "base/Unicode.h"
#include "script/KeySteps.h"
#include "script/ListSteps.h"
#include "script/WindowSteps.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <utility>

namespace DevHost {
namespace {

constexpr wchar_t class_name[] = L"QorvHostWindowScript";
constexpr UINT_PTR timer_id = 1;
constexpr UINT timer_period_in_ms = 20;

} // namespace

struct WindowScript::Verb {
    enum class Takes { Nothing, Text, Words }; ///< Each word is a separate step, as if on its own line.

    const wchar_t* name;
    bool (*act)(HWND i_window, const std::wstring& i_argument);
    Takes takes = Takes::Text;
};

const WindowScript::Verb WindowScript::verbs[] = {
    {L"window", WaitForTitle}, {L"text", WaitForText},
    {L"gone", WaitUntilGone},  {L"page", WaitForPage},
    {L"fill", FillField},      {L"press", PressButton},
    {L"focus", FocusItem},     {L"key", PressKey, Verb::Takes::Words},
    {L"type", TypeText},       {L"row", ClickRow},
    {L"add", ClickRowToo},     {L"open", OpenRow},
    {L"column", ClickColumn},  {L"edit", EditRowText},
    {L"choose", ChooseItem},   {L"menu", ChooseCommand},
    {L"picture", TakePicture}, {L"close", CloseByBox, Verb::Takes::Nothing},
};

WindowScript::WindowScript(const std::filesystem::path& i_file, DWORD i_step_time)
    : m_step_time(i_step_time), m_step_begin(GetTickCount64()) {
    std::wistringstream lines(FromUtf8(ReadWholeFile(i_file)));
    std::size_t number = 0;
    for (std::wstring line; std::getline(lines, line);) {
        ++number;
        line = OneLine(line);
        if (!line.empty() && line.front() != L'#')
            AddSteps(line, number);
    }
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = WindowProcedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = class_name;
    RegisterClassW(&window_class); // Fails if an earlier script has registered the class, which is fine.
    m_window = CreateWindowW(class_name, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, window_class.hInstance, nullptr);
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot start a window script");
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetTimer(m_window, timer_id, timer_period_in_ms, nullptr);
}

WindowScript::~WindowScript() {
    ReleaseModifiers();
    DestroyWindow(m_window);
}

void WindowScript::AddSteps(const std::wstring& i_line, std::size_t i_number) {
    const std::size_t blank = std::min(i_line.find(L' '), i_line.size());
    const std::wstring name = i_line.substr(0, blank);
    const std::wstring argument = i_line.substr(std::min(blank + 1, i_line.size()));
    const auto verb = std::ranges::find(verbs, name, &Verb::name);
    if (verb == std::end(verbs) || argument.empty() != (verb->takes == Verb::Takes::Nothing))
        throw Failure(E_INVALIDARG,
                      L"Line " + std::to_wstring(i_number) + L" of the window script isn't a step: " + i_line);
    if (verb->takes != Verb::Takes::Words) {
        m_steps.push_back({i_number, i_line, verb, argument});
        return;
    }
    std::wistringstream words(argument);
    for (std::wstring word; words >> word;)
        m_steps.push_back({i_number, i_line, verb, word});
}

LRESULT CALLBACK WindowScript::WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    auto* const script = reinterpret_cast<WindowScript*>(GetWindowLongPtrW(i_window, GWLP_USERDATA));
    if (i_message != WM_TIMER || script == nullptr)
        return DefWindowProcW(i_window, i_message, i_wparam, i_lparam);
    script->OnTimer();
    return 0;
}

/// One step at a time: a step that runs a message loop must not be disturbed.
void WindowScript::OnTimer() {
    ReleaseModifiers(); // Timers come after all messages, so those of the last step have been handled.
    const HWND window = WindowInUse();
    if (m_has_failed && window != nullptr)
        CloseByBox(window, {});
    if (m_is_working || m_steps.empty())
        return;
    const Step step = m_steps.front();
    m_is_working = true;
    try {
        if (window != nullptr && step.verb->act(window, step.argument)) {
            m_steps.pop_front();
            m_step_begin = GetTickCount64();
        } else if (GetTickCount64() - m_step_begin > m_step_time) {
            Fail(L"what it needs did not come in time");
        }
    } catch (const Failure& failure) {
        Fail(failure.Text());
    } catch (const std::exception&) {
        Fail(L"out of memory");
    }
    m_is_working = false;
}

bool WindowScript::End() {
    if (!m_steps.empty())
        Fail(L"there was no window left for it");
    return !m_has_failed;
}

void WindowScript::Fail(const std::wstring& i_reason) {
    const Step& step = m_steps.front();
    const std::string line = ToUtf8(L"qorvhost: Window script, line " + std::to_wstring(step.line) + L", \"" +
                                    step.text + L"\": " + i_reason + L"\n");
    std::fputs(line.c_str(), stderr);
    m_steps.clear();
    m_has_failed = true;
    EndMenu();
}

} // namespace DevHost
