#include "core/trace/Text.h"
#include "ui/dialog/FolderHistory.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Direction = Ui::FolderHistory::Direction;

/// Walks the steps ("<" and ">" go back and forward, anything else is a folder that is shown) and answers where Back
/// and Forward lead, and what was visited.
std::wstring Walk(const std::wstring& i_steps) {
    Ui::FolderHistory history;
    std::wistringstream words(i_steps);
    for (std::wstring word; words >> word;) {
        if (word == L"<" || word == L">") {
            const auto direction = word == L"<" ? Direction::back : Direction::forward;
            const std::wstring* const target = history.Target(direction);
            history.Step(direction);
            if (target != nullptr)
                history.Arrive(std::wstring(*target));
        } else {
            history.Arrive(word);
        }
    }
    const auto text = [](const std::wstring* i_location) { return i_location != nullptr ? *i_location : L"-"; };
    std::wstring state = text(history.Target(Direction::back)) + L" " + text(history.Target(Direction::forward)) + L":";
    for (const std::wstring& location : history.Visited())
        state += L" " + location;
    return state;
}

TEST(FolderHistoryTest, LeadsBackAndForward) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"", L"- -:"},
        {L"< >", L"- -:"},
        {L"a", L"- -: a"},
        {L"a a", L"- -: a"},
        {L"a b", L"a -: b a"},
        {L"a b <", L"- b: a b"},
        {L"a b < >", L"a -: b a"},
        {L"a b c < <", L"- b: a b c"},
        {L"a b c < d", L"b -: d b c a"},
        {L"a b a b", L"a -: b a"},
        {L"a b < a", L"- b: a b"},
    };
    for (const auto& [steps, state] : rows)
        EXPECT_EQ(state, Walk(steps)) << ToUtf8(steps);
}

TEST(FolderHistoryTest, StaysWhereAStepDoesNotArrive) {
    Ui::FolderHistory history;
    history.Arrive(L"a");
    history.Arrive(L"b");
    history.Step(Direction::back);
    EXPECT_EQ(L"a", *history.Target(Direction::back)) << "not there yet";
    history.Arrive(L"c");
    EXPECT_EQ(L"b", *history.Target(Direction::back)) << "another folder was shown instead";
    history.Clear();
    EXPECT_EQ(nullptr, history.Target(Direction::back));
}

} // namespace
