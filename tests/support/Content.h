#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tests {

/// Bytes of which no two blocks are alike, so that a lost, doubled or swapped one shows. The same for the same seed.
std::string RandomBytes(std::size_t i_size, unsigned i_seed = 1);

/// In lower-case hexadecimal.
std::string Sha256(std::string_view i_bytes);

} // namespace Tests
