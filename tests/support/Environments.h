#pragma once

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>

// What an entire test program needs; request it at file scope:
//
//   const auto* const log = testing::AddGlobalTestEnvironment(new Tests::LogEnvironment);

namespace Tests {

/// Makes the code under test log to a file of this process. At the end it must not contain an access token.
class LogEnvironment final : public testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

    static std::filesystem::path LogPath();

private:
    std::optional<TemporaryFolder> m_folder;
    std::optional<TemporaryVariable> m_variable;
};

/// Redirects WinINet to the development service that `tools/with-service.sh` has started.
class ServiceEnvironment final : public testing::Environment {
public:
    void SetUp() override;
};

} // namespace Tests
