#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace DevService {

/// SHA-256 of data that comes in pieces.
class Sha256 {
public:
    static constexpr std::size_t digest_size = 32;

    Sha256();

    void Add(std::string_view i_data);

    /// The 32 bytes of the digest; the object then starts again.
    std::string Finish();

private:
    struct Deleter {
        void operator()(evp_md_ctx_st* i_context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Deleter> m_context;
};

/// The service's hash of a file: SHA-256 of the joined SHA-256 digests of its 4 MiB blocks.
/// See the public "content hash" page of the service's documentation.
class ContentHash {
public:
    static constexpr std::size_t block_size = std::size_t{4} << 20;

    void Add(std::string_view i_data);

    /// 64 lower-case hexadecimal digits.
    std::string Finish();

private:
    void EndBlock();

    Sha256 m_block;
    Sha256 m_digests;
    std::size_t m_block_size = 0;
};

} // namespace DevService
