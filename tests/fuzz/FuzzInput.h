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

/// Calls `i_try(random, number)` for each input's number; stops at the first failure.
template <typename Try>
void ForNumbers(Try&& i_try) {
    for (std::uint64_t number = 0; number < InputCount() && !testing::Test::HasFailure(); ++number) {
        Random random(number);
        i_try(random, number);
    }
}

/// Calls `i_check(random, input)` with what `i_make` generates for each number.
template <typename Make, typename Check>
void ForMade(Make i_make, const Language& i_language, Check&& i_check) {
    ForNumbers([&](Random& io_random, std::uint64_t i_number) {
        const auto input = i_make(io_random, i_language);
        const std::basic_string_view view(input.data(), input.size());
        Trying(i_number, view);
        SCOPED_TRACE("input " + std::to_string(i_number) + ": " + Literal(view));
        i_check(io_random, input);
    });
}

/// Calls `i_check(random, input)` with bytes; stops at the first failure.
template <typename Check>
void ForInputs(const Language& i_language, Check&& i_check) {
    ForMade(Mutated, i_language, i_check);
}

/// The same with text.
template <typename Check>
void ForTexts(const Language& i_language, Check&& i_check) {
    ForMade(MutatedText, i_language, i_check);
}

/// Calls `i_check(random)`, which generates its own input.
template <typename Check>
void ForChances(Check&& i_check) {
    ForNumbers([&](Random& io_random, std::uint64_t i_number) {
        Trying(i_number, std::string_view("made by the test"));
        SCOPED_TRACE("input " + std::to_string(i_number));
        i_check(io_random);
    });
}

} // namespace Fuzz
