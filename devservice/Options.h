#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace DevService {

/// A command line that cannot be understood; the text says why.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the command line asks for.
struct Options {
    struct User {
        std::string name;
        std::string password;
        std::filesystem::path root;
    };

    /// What the public service takes in one request: 150 MiB.
    static constexpr std::uint64_t DefaultMaxUpload = std::uint64_t{150} << 20;

    std::vector<User> users;
    std::uint16_t port = 0;                      ///< 0: a free one
    std::uint64_t max_upload = DefaultMaxUpload; ///< bytes
    std::optional<std::filesystem::path> state_folder;
    bool is_help_wanted = false;

    static std::string_view Help();

    /// @param i_arguments without the program's name
    /// @throws UsageError
    static Options Parse(std::span<const char* const> i_arguments);
};

} // namespace DevService
