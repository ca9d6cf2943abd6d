#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <span>

namespace Storm {

/// Random numbers that are the same for the same seed on every machine: the library's distributions are not.
class Dice {
public:
    explicit Dice(std::uint64_t i_seed) : m_engine(i_seed) {}

    /// 0 to i_count - 1.
    std::uint64_t Below(std::uint64_t i_count) { return i_count == 0 ? 0 : m_engine() % i_count; }
    bool OneIn(std::uint64_t i_count) { return Below(i_count) == 0; }

    template <class Item>
    const Item& Pick(std::span<const Item> i_items) {
        return i_items[Below(i_items.size())];
    }
    template <class Item>
    Item Pick(std::initializer_list<Item> i_items) {
        return i_items.begin()[Below(i_items.size())];
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace Storm
