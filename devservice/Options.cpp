#include "Options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <limits>

namespace DevService {
namespace {

constexpr std::string_view default_user = "Dana Sample";
constexpr std::string_view default_password = "sample";

using Texts = std::vector<std::string>;

/// The i-th folder belongs to the i-th name and password.
std::vector<Options::User> MakeUsers(const Texts& i_roots, const Texts& i_names, const Texts& i_passwords) {
    if (i_names.size() > i_roots.size() || i_passwords.size() > i_roots.size())
        throw CLI::ValidationError("--user and --password", "there are more of them than --root folders");
    std::vector<Options::User> users;
    for (std::size_t i = 0; i < i_roots.size(); ++i) {
        const std::string default_name(default_user);
        Options::User user;
        user.name = i < i_names.size() ? i_names[i]
                    : i == 0           ? default_name
                                       : default_name + " " + std::to_string(i + 1);
        user.password = i < i_passwords.size() ? i_passwords[i] : default_password;
        user.root = i_roots[i];
        if (user.name.empty() || std::ranges::find(users, user.name, &Options::User::name) != users.end())
            throw CLI::ValidationError("--user", "every account needs a name of its own");
        users.push_back(std::move(user));
    }
    return users;
}

Texts TextsOf(const CLI::App& i_program, const char* i_name) {
    return i_program.count(i_name) == 0 ? Texts() : i_program[i_name]->as<Texts>();
}

} // namespace

void Options::AddTo(CLI::App& io_program) {
    const auto add_texts = [&](const char* i_name, const char* const i_meaning) {
        return io_program.add_option(i_name, i_meaning)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    };
    io_program.name("devservice");
    io_program.set_help_flag("-h,--help", "show this text");
    io_program.failure_message([](const CLI::App*, const CLI::Error& i_error) {
        return "devservice: " + std::string(i_error.what()) + ". Try: devservice --help\n";
    });
    io_program.description(
        "Serves folders of this machine as accounts of the storage service, to programs on this\n"
        "machine only. Use it as an HTTPS proxy; see docs/devservice.md. SIGINT and SIGTERM end it.");
    add_texts("--root", "the folder of an account; once for each account")
        ->required()
        ->check(CLI::Validator(CLI::ExistingDirectory).description(""))
        ->type_name("FOLDER");
    add_texts("--user", "the name of an account, in the order of the folders;\n"
                        "by default \"Dana Sample\", then \"Dana Sample 2\" and so on")
        ->type_name("NAME");
    add_texts("--password", "its password on the sign-in page; by default \"sample\"")->type_name("TEXT");
    io_program.add_option("--port", port, "the port on 127.0.0.1; by default 0, a free one")
        ->check(CLI::Range(0, 65535).description(""))
        ->type_name("N");
    io_program
        .add_option("--state", "the folder for \"address\", \"ca.pem\", \"token\", \"token.1\" and so on;\n"
                               "by default a new one among the temporary files")
        ->type_name("DIR");
    io_program
        .add_option("--max-upload", max_upload,
                    "bytes of content in one request;\n"
                    "by default 157286400, the 150 MiB of the public service")
        ->check(CLI::Range(std::int64_t{1}, std::numeric_limits<std::int64_t>::max()).description(""))
        ->type_name("N");
    io_program.callback([this, &io_program] {
        users =
            MakeUsers(TextsOf(io_program, "--root"), TextsOf(io_program, "--user"), TextsOf(io_program, "--password"));
        if (io_program.count("--state") != 0)
            state_folder = io_program["--state"]->as<std::string>();
    });
}

} // namespace DevService
