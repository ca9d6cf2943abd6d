#include "support/Content.h"

#include "qorv/Base.h"

#include <bcrypt.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <stdexcept>

namespace Tests {

std::string RandomBytes(std::size_t i_size, unsigned i_seed) {
    std::mt19937_64 generator(i_seed);
    std::string bytes(i_size, '\0');
    for (std::size_t i = 0; i < i_size; i += sizeof(std::uint64_t)) {
        const std::uint64_t word = generator();
        std::memcpy(&bytes[i], &word, std::min(sizeof word, i_size - i));
    }
    return bytes;
}

std::string Sha256(std::string_view i_bytes) {
    unsigned char digest[32];
    auto* const input = reinterpret_cast<unsigned char*>(const_cast<char*>(i_bytes.data())); // Only read.
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    const bool is_done = BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, 0) == 0 &&
                         BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) == 0 &&
                         BCryptHashData(hash, input, static_cast<ULONG>(i_bytes.size()), 0) == 0 &&
                         BCryptFinishHash(hash, digest, sizeof digest, 0) == 0;
    BCryptDestroyHash(hash);
    BCryptCloseAlgorithmProvider(algorithm, 0);
    if (!is_done)
        throw std::runtime_error("SHA-256 does not work");
    std::string text;
    for (const unsigned char byte : digest) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

} // namespace Tests
