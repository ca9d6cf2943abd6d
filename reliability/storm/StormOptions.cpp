#include "StormOptions.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace Storm {

namespace {

constexpr char usage[] = "usage: ./storm [--minutes N] [--seed S] [--first-batch N] [--without FAULT]...";

template <class Number>
Number ReadNumber(std::string_view i_option, std::string_view i_text) {
    Number number{};
    const auto [end, error] = std::from_chars(i_text.data(), i_text.data() + i_text.size(), number);
    if (error != std::errc() || end != i_text.data() + i_text.size() || number < 0)
        throw std::invalid_argument(std::string(i_option) + " takes a number, not \"" + std::string(i_text) + "\"");
    return number;
}

FaultKind ReadKind(std::string_view i_name) {
    std::string all;
    for (std::size_t kind = 1; kind < fault_kind_count; ++kind) {
        const auto name = NameOf(static_cast<FaultKind>(kind));
        if (name == i_name)
            return static_cast<FaultKind>(kind);
        all.append(all.empty() ? "" : ", ").append(name);
    }
    throw std::invalid_argument("--without takes one of these: " + all);
}

} // namespace

StormOptions StormOptions::Parse(int i_count, char** i_arguments) {
    constexpr double seconds_a_minute = 60;
    StormOptions options;
    for (int i = 1; i < i_count; i += 2) {
        const std::string_view name = i_arguments[i];
        if (i + 1 == i_count)
            throw std::invalid_argument(usage);
        const std::string_view value = i_arguments[i + 1];
        if (name == "--minutes")
            options.time = std::chrono::seconds(std::lround(seconds_a_minute * ReadNumber<double>(name, value)));
        else if (name == "--seed")
            options.seed = ReadNumber<std::uint64_t>(name, value);
        else if (name == "--first-batch")
            options.first_batch = ReadNumber<std::uint64_t>(name, value);
        else if (name == "--without")
            options.without.insert(ReadKind(value));
        else if (name == "--folder")
            options.folder = value;
        else if (name == "--wine")
            options.programs.wine = value;
        else if (name == "--host")
            options.programs.host = value;
        else if (name == "--client")
            options.programs.client = value;
        else if (name == "--trust")
            options.programs.trust = value;
        else
            throw std::invalid_argument("there is no option " + std::string(name) + "; " + usage);
    }
    return options;
}

} // namespace Storm
