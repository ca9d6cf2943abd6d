#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tests {

/// Bytes with no two blocks alike, so that a lost, repeated or swapped one shows. The same for the same seed.
std::string RandomBytes(std::size_t i_size, unsigned i_seed = 1);

/// In lower-case hexadecimal.
std::string Sha256(std::string_view i_bytes);

} // namespace Tests
