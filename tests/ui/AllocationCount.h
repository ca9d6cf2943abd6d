#pragma once

namespace Tests {

/// The number of blocks from `operator new` in use in this program; for tests of what is freed.
long LiveAllocations() noexcept;

} // namespace Tests
