#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace DevService {

/// What the command line asks for.
struct Options {
    struct User {
        std::string name;
        std::string password;
        std::filesystem::path root;
    };

    /// What the public service accepts in one request: 150 MiB.
    static constexpr std::uint64_t default_max_upload = std::uint64_t{150} << 20;

    /// Tells the parser what to fill in. The object must outlive the parsing.
    void AddTo(CLI::App& io_program);

    std::vector<User> users;
    std::uint16_t port = 0;                        ///< 0: a free one
    std::uint64_t max_upload = default_max_upload; ///< bytes
    std::optional<std::filesystem::path> state_folder;
};

} // namespace DevService
