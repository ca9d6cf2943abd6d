// Part of every test program: no test waits forever. One that takes too long is named, and its program ended. The limit
// is 120 s, or what TEST_SECONDS says.

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace Tests {
namespace {

constexpr ULONGLONG usual_limit_in_s = 120; // A loaded machine is slow; most tests take less than a second.
constexpr ULONGLONG never = ~ULONGLONG{0};

// The watching thread outlives everything destroyed at the program's end.
std::atomic<ULONGLONG> deadline = never;
std::atomic<const testing::TestInfo*> running = nullptr;

ULONGLONG LimitInSeconds() {
    const char* const text = std::getenv("TEST_SECONDS");
    return text != nullptr ? std::strtoull(text, nullptr, 10) : usual_limit_in_s;
}

void Watch() {
    while (GetTickCount64() < deadline)
        Sleep(200);
    const testing::TestInfo* const test = running;
    std::fprintf(stderr, "[ TOO LONG ] %s.%s, after %llu s\n", test->test_suite_name(), test->name(), LimitInSeconds());
    TerminateProcess(GetCurrentProcess(), EXIT_FAILURE); // Don't ask what hangs to end.
}

class TimeLimit final : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest&) override { std::thread(Watch).detach(); }
    void OnTestStart(const testing::TestInfo& i_test) override {
        running = &i_test;
        deadline = GetTickCount64() + LimitInSeconds() * 1000;
    }
    void OnTestEnd(const testing::TestInfo&) override { deadline = never; }
};

[[maybe_unused]] const bool is_listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new TimeLimit); // GoogleTest owns it.
    return true;
}();

} // namespace
} // namespace Tests
