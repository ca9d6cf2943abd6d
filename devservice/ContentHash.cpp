#include "ContentHash.h"

#include "Encoding.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace DevService {
namespace {

void Require(int i_result) {
    if (i_result != 1)
        throw std::runtime_error("SHA-256 is not available");
}

} // namespace

void Sha256::Deleter::operator()(evp_md_ctx_st* i_context) const {
    EVP_MD_CTX_free(i_context);
}

Sha256::Sha256() : m_context(EVP_MD_CTX_new()) {
    Require(EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr));
}

void Sha256::Add(std::string_view i_data) {
    Require(EVP_DigestUpdate(m_context.get(), i_data.data(), i_data.size()));
}

std::string Sha256::Finish() {
    std::array<unsigned char, digest_size> digest;
    Require(EVP_DigestFinal_ex(m_context.get(), digest.data(), nullptr));
    Require(EVP_DigestInit_ex(m_context.get(), nullptr, nullptr));
    return {digest.begin(), digest.end()};
}

void ContentHash::Add(std::string_view i_data) {
    while (!i_data.empty()) {
        const std::string_view part = i_data.substr(0, block_size - m_block_size);
        m_block.Add(part);
        m_block_size += part.size();
        i_data.remove_prefix(part.size());
        if (m_block_size == block_size)
            EndBlock();
    }
}

std::string ContentHash::Finish() {
    if (m_block_size > 0)
        EndBlock();
    const std::string digest = m_digests.Finish();
    return Hex({reinterpret_cast<const unsigned char*>(digest.data()), digest.size()});
}

void ContentHash::EndBlock() {
    m_digests.Add(m_block.Finish());
    m_block_size = 0;
}

} // namespace DevService
