#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Fuzz {

/// Random numbers that are the same for the same seed on every machine.
class Random {
public:
    explicit Random(std::uint64_t i_seed) : m_engine(i_seed) {}

    /// 0 to i_count - 1.
    std::size_t Below(std::size_t i_count) { return i_count == 0 ? 0 : static_cast<std::size_t>(m_engine() % i_count); }
    bool OneIn(std::size_t i_count) { return Below(i_count) == 0; }
    template <typename Item>
    const Item& Pick(const std::vector<Item>& i_items) {
        return i_items[Below(i_items.size())];
    }
    /// Up to this many letters of an alphabet.
    std::wstring Text(std::wstring_view i_alphabet, std::size_t i_longest);

private:
    std::mt19937_64 m_engine;
};

/// Valid inputs for a parser, and the words of its language.
struct Language {
    std::vector<std::string> examples; ///< In UTF-8.
    std::vector<std::string> words;
};

/// How many inputs each test generates: 20,000, or the value of FUZZ_INPUTS.
std::uint64_t InputCount();

/// An input: an example that was cut, joined, repeated, and sprinkled with words and bytes.
std::string Mutated(Random& io_random, const Language& i_language);
/// The same as UTF-16, which is invalid in places.
std::wstring MutatedText(Random& io_random, const Language& i_language);

/// Remembers the current input, so that it can be reported if the program ends.
void Trying(std::uint64_t i_number, std::string_view i_input);
void Trying(std::uint64_t i_number, std::wstring_view i_input);
/// The input as a C++ literal, for a failure's message.
std::string Literal(std::string_view i_bytes);
std::string Literal(std::wstring_view i_text);

/// Calls `i_check(random, input)` with bytes; stops at the first failure.
template <typename Check>
void ForInputs(const Language& i_language, Check&& i_check) {
    for (std::uint64_t number = 0; number < InputCount() && !testing::Test::HasFailure(); ++number) {
        Random random(number);
        const std::string input = Mutated(random, i_language);
        Trying(number, input);
        SCOPED_TRACE("input " + std::to_string(number) + ": " + Literal(std::string_view(input)));
        i_check(random, input);
    }
}

/// The same with text.
template <typename Check>
void ForTexts(const Language& i_language, Check&& i_check) {
    for (std::uint64_t number = 0; number < InputCount() && !testing::Test::HasFailure(); ++number) {
        Random random(number);
        const std::wstring input = MutatedText(random, i_language);
        Trying(number, input);
        SCOPED_TRACE("input " + std::to_string(number) + ": " + Literal(std::wstring_view(input)));
        i_check(random, input);
    }
}

/// Calls `i_check(random)`, which generates its own input.
template <typename Check>
void ForChances(Check&& i_check) {
    for (std::uint64_t number = 0; number < InputCount() && !testing::Test::HasFailure(); ++number) {
        Random random(number);
        Trying(number, std::string_view("made by the test"));
        SCOPED_TRACE("input " + std::to_string(number));
        i_check(random);
    }
}

} // namespace Fuzz
