// devtrust: makes a certificate authority trusted in the private Wine prefix, so that WinINet accepts the development
// service's certificate; and takes it out again. A program of its own because WinINet reads the trusted authorities
// once per process, at its first TLS connection.

#include "wine/WineNetwork.h"

#include <wincrypt.h>

#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct CloseStore {
    void operator()(HCERTSTORE i_store) const { CertCloseStore(i_store, 0); }
};
using Store = std::unique_ptr<void, CloseStore>;

struct FreeCertificate {
    void operator()(const CERT_CONTEXT* i_certificate) const { CertFreeCertificateContext(i_certificate); }
};
using Certificate = std::unique_ptr<const CERT_CONTEXT, FreeCertificate>;

std::string ReadWholeFile(const wchar_t* i_path) {
    const std::unique_ptr<FILE, int (*)(FILE*)> file(_wfopen(i_path, L"rb"), &std::fclose);
    if (!file) {
        throw std::runtime_error("the file cannot be read");
    }
    std::string text;
    std::array<char, 4096> block{};
    while (const size_t size = std::fread(block.data(), 1, block.size(), file.get())) {
        text.append(block.data(), size);
    }
    return text;
}

/// The certificates of a PEM file, which may hold more than one.
std::vector<Certificate> ParseCertificates(std::string_view i_pem) {
    constexpr std::string_view begin_mark = "-----BEGIN CERTIFICATE-----";
    constexpr std::string_view end_mark = "-----END CERTIFICATE-----";
    std::vector<Certificate> certificates;
    for (size_t begin = i_pem.find(begin_mark); begin != i_pem.npos; begin = i_pem.find(begin_mark, begin + 1)) {
        const size_t end = i_pem.find(end_mark, begin);
        const std::string_view text = i_pem.substr(begin, end == i_pem.npos ? end : end + end_mark.size() - begin);
        std::vector<BYTE> bytes(text.size()); // Base64 never grows when decoded
        auto size = static_cast<DWORD>(bytes.size());
        const auto length = static_cast<DWORD>(text.size());
        const PCCERT_CONTEXT certificate =
            CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64HEADER, bytes.data(), &size, nullptr, nullptr)
                ? CertCreateCertificateContext(X509_ASN_ENCODING, bytes.data(), size)
                : nullptr;
        if (certificate == nullptr) {
            throw std::runtime_error("the file holds a damaged certificate");
        }
        certificates.emplace_back(certificate);
    }
    if (certificates.empty()) {
        throw std::runtime_error("the file holds no certificate in PEM form");
    }
    return certificates;
}

/// The registry's part of the store alone: from the whole one Wine does not remove anything.
Store OpenTrustedAuthorities() {
    Store store(CertOpenStore(CERT_STORE_PROV_SYSTEM_REGISTRY_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root"));
    if (!store) {
        throw std::runtime_error("the store of trusted authorities cannot be opened");
    }
    return store;
}

void Add(HCERTSTORE i_store, const CERT_CONTEXT* i_certificate) {
    if (!CertAddCertificateContextToStore(i_store, i_certificate, CERT_STORE_ADD_REPLACE_EXISTING, nullptr)) {
        throw std::runtime_error("the authority cannot be added");
    }
}

/// One that is not there needs no removal.
void Remove(HCERTSTORE i_store, const CERT_CONTEXT* i_certificate) {
    const PCCERT_CONTEXT found =
        CertFindCertificateInStore(i_store, X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, i_certificate, nullptr);
    if (found != nullptr && !CertDeleteCertificateFromStore(found)) { // frees it, too
        throw std::runtime_error("the authority cannot be removed");
    }
}

} // namespace

int wmain(int i_count, wchar_t** i_arguments) {
    const std::wstring_view command = i_count == 3 ? i_arguments[1] : L"";
    if (command != L"add" && command != L"remove") {
        std::fputs("usage: devtrust add|remove CA.PEM\n", stderr);
        return 2;
    }
    if (!DevHost::IsWine()) {
        std::fputs("devtrust: works in a private Wine prefix only. Windows would ask you to trust this authority for "
                   "everything you do; import the file by hand if that is what you want.\n",
                   stderr);
        return 1;
    }
    try {
        const std::vector<Certificate> certificates = ParseCertificates(ReadWholeFile(i_arguments[2]));
        const Store store = OpenTrustedAuthorities();
        for (const Certificate& certificate : certificates) {
            (command == L"add" ? &Add : &Remove)(store.get(), certificate.get());
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "devtrust: %s: %ls\n", error.what(), i_arguments[2]);
        return 1;
    }
}
