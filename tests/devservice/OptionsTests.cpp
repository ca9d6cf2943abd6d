#include "Options.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

using DevService::Options;

namespace {

TEST(Options, ReadsCommandLines) {
    const std::string folder = std::filesystem::temp_directory_path().string();
    struct Row {
        std::vector<const char*> arguments;
        const char* users; ///< "name/password" each, or the beginning of the message
    };
    const char* const f = folder.c_str();
    const Row rows[] = {
        {{"--root", f}, "Dana Sample/sample "},
        {{"--root", f, "--user", "A", "--password", "p", "--root", f}, "A/p Dana Sample 2/sample "},
        {{"--user", "A", "--user", "B", "--root", f, "--root", f, "--port", "65535"}, "A/sample B/sample "},
        {{}, "--root is required"},
        {{"--root"}, "--root: 1 required FOLDER missing"},
        {{"--root", "/no/such/folder"}, "--root: Directory does not exist: /no/such/folder"},
        {{"--root", f, "--user", "A", "--user", "B"},
         "--user and --password: there are more of them than --root folders"},
        {{"--root", f, "--root", f, "--user", "A", "--user", "A"}, "--user: every account needs a name of its own"},
        {{"--root", f, "--port", "65536"}, "--port: Value 65536 not in range"},
        {{"--root", f, "--port", "80x"}, "--port: Value 80x not in range"},
        {{"--root", f, "--max-upload", "256M"}, "--max-upload: Value 256M not in range"},
        {{"--root", f, "/var"}, "The following argument was not expected: /var"},
        {{"--root", f, "--password", "-p", "--user", "[A,B]"}, "[A,B]/-p "},
        {{"--root", f, "--max-upload", "268435456"}, "Dana Sample/sample "},
        {{"--root", f, "--verbose"}, "The following argument was not expected: --verbose"},
    };
    for (const Row& row : rows) {
        std::string users;
        try {
            CLI::App program;
            Options options;
            options.AddTo(program);
            program.parse(
                std::vector<std::string>(row.arguments.rbegin(), row.arguments.rend())); // It takes them from the end.
            for (const Options::User& user : options.users)
                users += user.name + "/" + user.password + " ";
        } catch (const CLI::ParseError& error) {
            users = error.what();
        }
        EXPECT_TRUE(users.starts_with(row.users)) << users << " instead of " << row.users;
    }
}

} // namespace
