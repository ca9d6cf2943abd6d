#include "uix/WindowScript.h"

#include "services/Failure.h"
#include "services/LocalFile.h"
#include "services/Unicode.h"
#include "uix/WindowSteps.h"

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
    const wchar_t* name;
    bool (*act)(HWND i_window, const std::wstring& i_argument);
    bool has_argument;
};

const WindowScript::Verb WindowScript::verbs[] = {
    {L"window", WaitForTitle, true}, {L"text", WaitForText, true},    {L"page", WaitForPage, true},
    {L"fill", FillField, true},      {L"press", PressButton, true},   {L"key", PressKeys, true},
    {L"close", CloseByBox, false},   {L"picture", TakePicture, true},
};

WindowScript::WindowScript(const std::filesystem::path& i_file, DWORD i_step_time)
    : m_step_time(i_step_time), m_step_begin(GetTickCount64()) {
    std::wistringstream lines(FromUtf8(ReadWholeFile(i_file)));
    size_t number = 0;
    for (std::wstring line; std::getline(lines, line);) {
        ++number;
        line = OneLine(line);
        if (!line.empty() && line.front() != L'#')
            m_steps.push_back(ParseStep(line, number));
    }
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = WindowProcedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = class_name;
    RegisterClassW(&window_class); // Fails when an earlier script did it, which is as good.
    m_window = CreateWindowW(class_name, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, window_class.hInstance, nullptr);
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot start a window script");
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetTimer(m_window, timer_id, timer_period_in_ms, nullptr);
}

WindowScript::~WindowScript() {
    DestroyWindow(m_window);
}

WindowScript::Step WindowScript::ParseStep(const std::wstring& i_line, size_t i_number) {
    const size_t blank = std::min(i_line.find(L' '), i_line.size());
    const std::wstring name = i_line.substr(0, blank);
    const std::wstring argument = i_line.substr(std::min(blank + 1, i_line.size()));
    for (const Verb& verb : verbs)
        if (name == verb.name && argument.empty() != verb.has_argument)
            return {i_number, i_line, &verb, argument};
    throw Failure(E_INVALIDARG, L"Line " + std::to_wstring(i_number) + L" of the window script is no step: " + i_line);
}

LRESULT CALLBACK WindowScript::WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    auto* const script = reinterpret_cast<WindowScript*>(GetWindowLongPtrW(i_window, GWLP_USERDATA));
    if (i_message != WM_TIMER || script == nullptr)
        return DefWindowProcW(i_window, i_message, i_wparam, i_lparam);
    script->OnTimer();
    return 0;
}

/// One step at a time; a step that runs a message loop inside is not to be disturbed.
void WindowScript::OnTimer() {
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
            Fail(L"it waited in vain");
        }
    } catch (const Failure& failure) {
        Fail(failure.Text());
    } catch (const std::exception&) {
        Fail(L"out of memory");
    }
    m_is_working = false;
}

void WindowScript::Fail(const std::wstring& i_reason) {
    const Step& step = m_steps.front();
    const std::string line =
        ToUtf8(L"window script, line " + std::to_wstring(step.line) + L", \"" + step.text + L"\": " + i_reason + L"\n");
    std::fputs(line.c_str(), stderr);
    m_steps.clear();
    m_has_failed = true;
}

} // namespace DevHost
