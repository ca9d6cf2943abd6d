// devtrust: makes a certificate authority trusted in the private Wine prefix, so that WinINet accepts the development
// service's certificate; and removes it again. A separate program because WinINet reads the trusted authorities only
// once per process, at its first TLS connection.

#include "base/LocalFile.h"
#include "base/Unicode.h"
#include "wine/WineNetwork.h"

#include <CLI/CLI.hpp>

#include <wincrypt.h>

#include <algorithm>
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

/// The certificates of a PEM file, which may hold more than one.
std::vector<Certificate> ParseCertificates(std::string_view i_pem) {
    constexpr std::string_view begin_mark = "-----BEGIN CERTIFICATE-----";
    constexpr std::string_view end_mark = "-----END CERTIFICATE-----";
    std::vector<Certificate> certificates;
    for (std::size_t begin = i_pem.find(begin_mark); begin != i_pem.npos; begin = i_pem.find(begin_mark, begin + 1)) {
        const std::size_t end = i_pem.find(end_mark, begin);
        const std::string_view text = i_pem.substr(begin, end == i_pem.npos ? end : end + end_mark.size() - begin);
        std::vector<BYTE> bytes(text.size()); // Base64 never grows when decoded
        auto size = static_cast<DWORD>(bytes.size());
        const auto length = static_cast<DWORD>(text.size());
        const PCCERT_CONTEXT certificate =
            CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64HEADER, bytes.data(), &size, nullptr, nullptr)
                ? CertCreateCertificateContext(X509_ASN_ENCODING, bytes.data(), size)
                : nullptr;
        if (certificate == nullptr)
            throw std::runtime_error("the file holds a damaged certificate");
        certificates.emplace_back(certificate);
    }
    if (certificates.empty())
        throw std::runtime_error("the file holds no certificate in PEM form");
    return certificates;
}

/// Only the registry's part of the store: Wine removes nothing from the complete one.
Store OpenTrustedAuthorities() {
    Store store(CertOpenStore(CERT_STORE_PROV_SYSTEM_REGISTRY_W, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, L"Root"));
    if (!store)
        throw std::runtime_error("the store of trusted authorities cannot be opened");
    return store;
}

void Add(HCERTSTORE i_store, const CERT_CONTEXT* i_certificate) {
    if (!CertAddCertificateContextToStore(i_store, i_certificate, CERT_STORE_ADD_REPLACE_EXISTING, nullptr))
        throw std::runtime_error("the authority cannot be added");
}

/// A missing one needs no removal.
void Remove(HCERTSTORE i_store, const CERT_CONTEXT* i_certificate) {
    const PCCERT_CONTEXT found =
        CertFindCertificateInStore(i_store, X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, i_certificate, nullptr);
    if (found != nullptr && !CertDeleteCertificateFromStore(found)) // frees it, too
        throw std::runtime_error("the authority cannot be removed");
}

/// Throws a CLI::ParseError for invalid arguments.
void Run(CLI::App& io_program, const std::vector<std::string>& i_arguments) {
    io_program.allow_windows_style_options(false); // The file may begin with a "/".
    std::string file;
    const auto add_command = [&](const char* i_name, const std::string& i_summary) {
        auto* const command = io_program.add_subcommand(i_name, i_summary);
        command->add_option("CA.PEM", file)->required();
        return command;
    };
    const auto* const add = add_command("add", "trust the authorities in a file");
    add_command("remove", "take them out again");
    io_program.require_subcommand(1);
    io_program.parse(std::vector(i_arguments.rbegin(), i_arguments.rend())); // The parser takes them in reverse order.
    if (!DevHost::IsWine())
        throw std::runtime_error("works in a private Wine prefix only. Windows would ask you to trust this authority "
                                 "for everything you do; import the file by hand if that is what you want");
    const std::vector<Certificate> certificates = ParseCertificates(DevHost::ReadWholeFile(DevHost::FromUtf8(file)));
    const Store store = OpenTrustedAuthorities();
    for (const Certificate& certificate : certificates)
        (add->parsed() ? &Add : &Remove)(store.get(), certificate.get());
}

} // namespace

int wmain(int i_count, wchar_t** i_arguments) {
    CLI::App program("Makes certificate authorities trusted in the private Wine prefix.", "devtrust");
    try {
        std::vector<std::string> arguments;
        std::transform(i_arguments + 1, i_arguments + i_count, std::back_inserter(arguments), DevHost::ToUtf8);
        Run(program, arguments);
        return 0;
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "devtrust: %s\n", error.what());
        return 1;
    }
}
