#include "support/Environments.h"

namespace {

const auto* const log = testing::AddGlobalTestEnvironment(new Tests::LogEnvironment);
const auto* const service = testing::AddGlobalTestEnvironment(new Tests::ServiceEnvironment);

} // namespace
