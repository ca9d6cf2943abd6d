#include "Options.h"

#include <algorithm>
#include <charconv>

namespace DevService {

namespace {

constexpr std::string_view DefaultUser = "Dana Sample";
constexpr std::string_view DefaultPassword = "sample";

/// @param i_wanted the option and what it takes, for the message
template <class Number>
Number ParseNumber(const std::string& i_text, std::string_view i_wanted) {
    Number number = 0;
    const auto [end, error] = std::from_chars(i_text.data(), i_text.data() + i_text.size(), number);
    if (error != std::errc() || end != i_text.data() + i_text.size())
        throw UsageError(std::string(i_wanted) + ", not \"" + i_text + "\"");
    return number;
}

/// The i-th folder belongs to the i-th name and password.
std::vector<Options::User> MakeUsers(const std::vector<std::string>& i_roots, const std::vector<std::string>& i_names,
                                     const std::vector<std::string>& i_passwords) {
    if (i_roots.empty())
        throw UsageError("--root FOLDER is missing: which folder shall be served?");
    if (i_names.size() > i_roots.size() || i_passwords.size() > i_roots.size())
        throw UsageError("there are more users or passwords than --root folders");
    std::vector<Options::User> users;
    for (std::size_t i = 0; i < i_roots.size(); ++i) {
        const std::string default_name(DefaultUser);
        Options::User user;
        user.name = i < i_names.size() ? i_names[i]
                    : i == 0           ? default_name
                                       : default_name + " " + std::to_string(i + 1);
        user.password = i < i_passwords.size() ? i_passwords[i] : DefaultPassword;
        user.root = i_roots[i];
        if (user.name.empty() || std::ranges::find(users, user.name, &Options::User::name) != users.end())
            throw UsageError("every --user needs a name of its own");
        if (!std::filesystem::is_directory(user.root))
            throw UsageError("--root " + i_roots[i] + ": there is no such folder");
        users.push_back(std::move(user));
    }
    return users;
}

} // namespace

std::string_view Options::Help() {
    return R"(usage: devservice --root FOLDER [--user NAME] [--password TEXT] ... [options]

Serves folders of this machine as accounts of the storage service, to programs on
this machine only. Reach it as an HTTPS proxy; docs/devservice.md tells more.

  --root FOLDER     the folder of an account; once for each account
  --user NAME       name of the account of the same place in order
                    (default: "Dana Sample", then "Dana Sample 2" and so on)
  --password TEXT   its password on the sign-in page (default: "sample")
  --port N          port on 127.0.0.1 (default: 0, a free one)
  --state DIR       folder for "address", "ca.pem", "token" and "token.1", ...
                    (default: a new folder among the temporary files)
  --max-upload N    bytes of content in one request (default: 157286400, the
                    150 MiB of the public service)
  --help            shows this text

SIGINT and SIGTERM end it.
)";
}

Options Options::Parse(std::span<const char* const> i_arguments) {
    Options options;
    std::vector<std::string> roots, names, passwords;
    for (std::size_t i = 0; i < i_arguments.size(); ++i) {
        const std::string_view option = i_arguments[i];
        if (option == "--help" || option == "-h") {
            options.is_help_wanted = true;
            return options;
        }
        const auto value = [&]() -> std::string {
            if (i + 1 == i_arguments.size())
                throw UsageError(std::string(option) + " wants a value");
            return i_arguments[++i];
        };
        if (option == "--root")
            roots.push_back(value());
        else if (option == "--user")
            names.push_back(value());
        else if (option == "--password")
            passwords.push_back(value());
        else if (option == "--port")
            options.port = ParseNumber<std::uint16_t>(value(), "--port wants a number from 0 to 65535");
        else if (option == "--max-upload")
            options.max_upload = ParseNumber<std::uint64_t>(value(), "--max-upload wants a number of bytes");
        else if (option == "--state")
            options.state_folder = value();
        else
            throw UsageError("unknown option \"" + std::string(option) + "\"");
    }
    options.users = MakeUsers(roots, names, passwords);
    return options;
}

} // namespace DevService
