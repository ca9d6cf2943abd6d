#include "support/Environments.h"

namespace {

const auto* const log = testing::AddGlobalTestEnvironment(new Tests::LogEnvironment);

} // namespace
