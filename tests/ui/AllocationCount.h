#pragma once

namespace Tests {

/// How many blocks that `operator new` has given out in this program are in use. For tests of what is freed.
long LiveAllocations() noexcept;

} // namespace Tests
