#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Options.h"

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
        {{}, "--root FOLDER is missing"},
        {{"--root"}, "--root wants a value"},
        {{"--root", "/no/such/folder"}, "--root /no/such/folder: there is no such folder"},
        {{"--root", f, "--user", "A", "--user", "B"}, "there are more users"},
        {{"--root", f, "--root", f, "--user", "A", "--user", "A"}, "every --user needs a name of its own"},
        {{"--root", f, "--port", "65536"}, "--port wants a number"},
        {{"--root", f, "--port", "80x"}, "--port wants a number"},
        {{"--root", f, "--max-upload", "256M"}, "--max-upload wants a number of bytes, not \"256M\""},
        {{"--root", f, "--max-upload", "268435456"}, "Dana Sample/sample "},
        {{"--root", f, "--verbose"}, "unknown option \"--verbose\""},
    };
    for (const Row& row : rows) {
        std::string users;
        try {
            for (const Options::User& user : Options::Parse(row.arguments).users)
                users += user.name + "/" + user.password + " ";
        } catch (const DevService::UsageError& error) {
            users = error.what();
        }
        EXPECT_TRUE(users.starts_with(row.users)) << users << " instead of " << row.users;
    }
}

} // namespace
