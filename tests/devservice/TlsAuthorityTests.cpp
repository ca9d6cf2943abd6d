#include "TlsAuthority.h"

#include <gtest/gtest.h>
#include <openssl/ecdsa.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <memory>

namespace {

/// The size in bytes of the shorter of the two numbers in a certificate's signature.
int ShorterNumber(const X509& i_certificate) {
    const ASN1_BIT_STRING* bits = nullptr;
    X509_get0_signature(&bits, nullptr, &i_certificate);
    const unsigned char* bytes = bits->data;
    const std::unique_ptr<ECDSA_SIG, void (*)(ECDSA_SIG*)> signature(d2i_ECDSA_SIG(nullptr, &bytes, bits->length),
                                                                     &ECDSA_SIG_free);
    return std::min(BN_num_bytes(ECDSA_SIG_get0_r(signature.get())), BN_num_bytes(ECDSA_SIG_get0_s(signature.get())));
}

/// One run in 64 was not trusted under Wine, for no visible reason.
TEST(TlsAuthority, SignaturesAreThoseThatAllClientsRead) {
    for (int run = 0; run < 400; ++run) {
        DevService::TlsAuthority authority;
        const std::unique_ptr<BIO, int (*)(BIO*)> pem(
            BIO_new_mem_buf(authority.Pem().data(), static_cast<int>(authority.Pem().size())), &BIO_free);
        const std::unique_ptr<X509, void (*)(X509*)> own(PEM_read_bio_X509(pem.get(), nullptr, nullptr, nullptr),
                                                         &X509_free);
        ASSERT_EQ(ShorterNumber(*own), 32);
        ASSERT_EQ(ShorterNumber(*SSL_CTX_get0_certificate(authority.ServerContext().native_handle())), 32);
    }
}

} // namespace
