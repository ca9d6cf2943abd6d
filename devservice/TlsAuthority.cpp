#include "TlsAuthority.h"

#include "Hosts.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/ecdsa.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>
#include <string_view>

namespace DevService {
namespace {

template <auto Free>
struct Deleter {
    template <class Type>
    void operator()(Type* i_object) const {
        Free(i_object);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Deleter<X509_free>>;

void Require(bool i_is_good) {
    if (!i_is_good)
        throw std::runtime_error("cannot make the TLS certificate");
}

Key NewKey() {
    Key key(EVP_EC_gen("P-256"));
    Require(key != nullptr);
    return key;
}

void SetName(X509_NAME* o_name, std::string_view i_common_name) {
    Require(X509_NAME_add_entry_by_txt(o_name, "CN", MBSTRING_UTF8,
                                       reinterpret_cast<const unsigned char*>(i_common_name.data()),
                                       static_cast<int>(i_common_name.size()), -1, 0) == 1);
}

/// A serial number that no earlier run has used: browsers and systems refuse a second certificate with the same one.
void SetSerial(X509& io_certificate) {
    unsigned char bytes[16];
    Require(RAND_bytes(bytes, sizeof bytes) == 1);
    bytes[0] &= 0x7F; // serial numbers are positive
    const std::unique_ptr<BIGNUM, Deleter<BN_free>> number(BN_bin2bn(bytes, sizeof bytes, nullptr));
    Require(number && BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(&io_certificate)));
}

void AddExtension(X509& io_certificate, X509& i_issuer, int i_kind, const std::string& i_value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, &i_issuer, &io_certificate, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Deleter<X509_EXTENSION_free>> extension(
        X509V3_EXT_conf_nid(nullptr, &context, i_kind, i_value.c_str()));
    Require(extension && X509_add_ext(&io_certificate, extension.get(), -1) == 1);
}

bool HasFullSignature(const X509& i_certificate) {
    const ASN1_BIT_STRING* bits = nullptr;
    X509_get0_signature(&bits, nullptr, &i_certificate);
    const unsigned char* bytes = bits->data;
    const std::unique_ptr<ECDSA_SIG, Deleter<ECDSA_SIG_free>> signature(d2i_ECDSA_SIG(nullptr, &bytes, bits->length));
    Require(signature != nullptr);
    constexpr int full_size = 32; // Of P-256
    return BN_num_bytes(ECDSA_SIG_get0_r(signature.get())) == full_size &&
           BN_num_bytes(ECDSA_SIG_get0_s(signature.get())) == full_size;
}

/// Wine reads the two numbers of a signature without their leading zeros, and takes one of 31 bytes for a wrong one:
/// that would be one certificate in 128. Each signature is different, so sign again until both numbers are long.
void Sign(X509& io_certificate, EVP_PKEY& i_key) {
    do
        Require(X509_sign(&io_certificate, &i_key, EVP_sha256()) > 0);
    while (!HasFullSignature(io_certificate));
}

Certificate NewCertificate(std::string_view i_name, EVP_PKEY& i_key) {
    constexpr long day = 24L * 60 * 60;
    Certificate certificate(X509_new());
    Require(certificate != nullptr);
    Require(X509_set_version(certificate.get(), X509_VERSION_3) == 1);
    SetSerial(*certificate);
    Require(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -day) != nullptr);
    Require(X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 365 * day) != nullptr);
    SetName(X509_get_subject_name(certificate.get()), i_name);
    Require(X509_set_pubkey(certificate.get(), &i_key) == 1);
    return certificate;
}

Certificate NewAuthority(EVP_PKEY& i_key) {
    Certificate authority = NewCertificate("devservice local authority", i_key);
    Require(X509_set_issuer_name(authority.get(), X509_get_subject_name(authority.get())) == 1);
    AddExtension(*authority, *authority, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    AddExtension(*authority, *authority, NID_key_usage, "critical,keyCertSign,cRLSign");
    AddExtension(*authority, *authority, NID_subject_key_identifier, "hash");
    Sign(*authority, i_key);
    return authority;
}

Certificate NewHostCertificate(EVP_PKEY& i_key, X509& i_authority, EVP_PKEY& i_authority_key) {
    Certificate certificate = NewCertificate(api_host, i_key);
    Require(X509_set_issuer_name(certificate.get(), X509_get_subject_name(&i_authority)) == 1);
    std::string names;
    for (const std::string_view host : {api_host, content_host, web_host})
        names.append(names.empty() ? "DNS:" : ",DNS:").append(host);
    AddExtension(*certificate, i_authority, NID_subject_alt_name, names);
    AddExtension(*certificate, i_authority, NID_basic_constraints, "critical,CA:FALSE");
    AddExtension(*certificate, i_authority, NID_key_usage, "critical,digitalSignature");
    AddExtension(*certificate, i_authority, NID_ext_key_usage, "serverAuth");
    AddExtension(*certificate, i_authority, NID_subject_key_identifier, "hash");
    // All authorities have the same name: the identifier distinguishes them for a client that still knows an earlier
    // one.
    AddExtension(*certificate, i_authority, NID_authority_key_identifier, "keyid:always");
    Sign(*certificate, i_authority_key);
    return certificate;
}

std::string PemOf(X509& i_certificate) {
    const std::unique_ptr<BIO, Deleter<BIO_free_all>> memory(BIO_new(BIO_s_mem()));
    Require(memory && PEM_write_bio_X509(memory.get(), &i_certificate) == 1);
    char* text = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(size)};
}

} // namespace

TlsAuthority::TlsAuthority() : m_context(boost::asio::ssl::context::tls_server) {
    const Key authority_key = NewKey();
    const Certificate authority = NewAuthority(*authority_key);
    const Key key = NewKey();
    const Certificate certificate = NewHostCertificate(*key, *authority, *authority_key);
    SSL_CTX* const context = m_context.native_handle();
    Require(SSL_CTX_use_certificate(context, certificate.get()) == 1);
    Require(SSL_CTX_use_PrivateKey(context, key.get()) == 1);
    Require(SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) == 1);
    // Without tickets a client receives only replies: one that disconnects has read everything, so its last bytes
    // arrive here instead of being lost with the connection.
    SSL_CTX_set_options(context, SSL_OP_NO_TICKET);
    Require(SSL_CTX_set_num_tickets(context, 0) == 1);
    m_pem = PemOf(*authority);
}

} // namespace DevService
