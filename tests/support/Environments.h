#pragma once

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>

// What a whole test program needs; it asks for it at file scope:
//
//   const auto* const log = testing::AddGlobalTestEnvironment(new Tests::LogEnvironment);

namespace Tests {

/// Has the code under test write its log, to a file of this process. At the end no access token may be in it.
class LogEnvironment final : public testing::Environment {
public:
    void SetUp() override;
    void TearDown() override;

    static std::filesystem::path LogPath();

private:
    std::optional<TemporaryFolder> m_folder;
    std::optional<TemporaryVariable> m_variable;
};

/// Leads WinINet to the development service that `tools/with-service.sh` has started.
class ServiceEnvironment final : public testing::Environment {
public:
    void SetUp() override;
};

} // namespace Tests
