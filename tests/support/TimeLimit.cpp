// A part of every test program: no test waits for ever. One that takes too long is named and ends its program.

#include <gtest/gtest.h>

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <thread>

namespace Tests {
namespace {

constexpr int limit_in_s = 120; // A loaded machine is slow; most tests take less than a second.
constexpr ULONGLONG never = ~ULONGLONG{0};

// The watching thread outlives all that is destroyed at the program's end.
std::atomic<ULONGLONG> deadline = never;
std::atomic<const testing::TestInfo*> running = nullptr;

void Watch() {
    while (GetTickCount64() < deadline)
        Sleep(200);
    const testing::TestInfo* const test = running;
    std::fprintf(stderr, "[ TOO LONG ] %s.%s, after %d s\n", test->test_suite_name(), test->name(), limit_in_s);
    TerminateProcess(GetCurrentProcess(), EXIT_FAILURE); // What hangs must not be asked to end.
}

class TimeLimit final : public testing::EmptyTestEventListener {
public:
    void OnTestProgramStart(const testing::UnitTest&) override { std::thread(Watch).detach(); }
    void OnTestStart(const testing::TestInfo& i_test) override {
        running = &i_test;
        deadline = GetTickCount64() + ULONGLONG{limit_in_s} * 1000;
    }
    void OnTestEnd(const testing::TestInfo&) override { deadline = never; }
};

[[maybe_unused]] const bool is_listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new TimeLimit); // GoogleTest owns it.
    return true;
}();

} // namespace
} // namespace Tests
