#include "services/CryptKey.h"

#include "base/Failure.h"
#include "base/LocalFile.h"

#include <bcrypt.h>
#include <dpapi.h>
#include <wincrypt.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace DevHost {
namespace {

// The prefix of the cipher text; later formats would have another.
constexpr std::wstring_view marker = L"qorv-protected-1:";

struct FreeLocal {
    void operator()(BYTE* i_memory) const { LocalFree(i_memory); }
};

/// Takes over the memory that the system allocated for a blob.
std::string TakeBytes(const DATA_BLOB& i_blob) {
    const std::unique_ptr<BYTE, FreeLocal> memory(i_blob.pbData);
    return {reinterpret_cast<const char*>(i_blob.pbData), i_blob.cbData};
}

DATA_BLOB BlobOf(const void* i_data, std::size_t i_size) noexcept {
    return {static_cast<DWORD>(i_size), static_cast<BYTE*>(const_cast<void*>(i_data))}; // Only read.
}

std::wstring ToBase64(std::string_view i_bytes) {
    const auto* bytes = reinterpret_cast<const BYTE*>(i_bytes.data());
    const auto size = static_cast<DWORD>(i_bytes.size());
    constexpr DWORD format = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
    DWORD length = 0;
    CryptBinaryToStringW(bytes, size, format, nullptr, &length);
    std::wstring text(length, L'\0');
    if (!CryptBinaryToStringW(bytes, size, format, text.data(), &length))
        throw LastErrorFailure(L"Cannot encode a text");
    text.resize(length);
    return text;
}

/// The bytes of a text; none if it isn't exactly what `ToBase64` writes.
std::string FromBase64(std::wstring_view i_text) {
    const auto length = static_cast<DWORD>(i_text.size());
    std::string bytes(i_text.size(), '\0');
    auto size = static_cast<DWORD>(bytes.size());
    if (length == 0 || !CryptStringToBinaryW(i_text.data(), length, CRYPT_STRING_BASE64,
                                             reinterpret_cast<BYTE*>(bytes.data()), &size, nullptr, nullptr))
        return {};
    bytes.resize(size);
    return ToBase64(bytes) == i_text ? bytes : std::string();
}

} // namespace

Qorv::ComPtr<CryptKey> CryptKey::Load(const std::filesystem::path& i_path, bool i_create) {
    std::array<BYTE, size> secret{};
    std::error_code ignored;
    if (std::filesystem::exists(i_path, ignored)) {
        const std::string bytes = ReadWholeFile(i_path);
        if (bytes.size() != secret.size())
            throw Failure(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT),
                          L"The key file " + i_path.wstring() +
                              L" is damaged. Restore it from a backup, or remove it and sign in again");
        std::ranges::copy(bytes, secret.begin());
    } else if (i_create) {
        if (BCryptGenRandom(nullptr, secret.data(), ULONG{secret.size()}, BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0)
            throw Failure(E_FAIL, L"The system has no random numbers for a key");
        WriteFileAtomically(i_path, {reinterpret_cast<const char*>(secret.data()), secret.size()});
    } else {
        return nullptr;
    }
    return Qorv::Create<CryptKey>(secret);
}

std::wstring CryptKey::Encrypt(std::wstring_view i_text) const {
    DATA_BLOB clear = BlobOf(i_text.data(), i_text.size() * sizeof(wchar_t));
    DATA_BLOB entropy = BlobOf(m_secret.data(), m_secret.size());
    DATA_BLOB output{};
    if (!CryptProtectData(&clear, nullptr, &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &output))
        throw LastErrorFailure(L"Cannot encrypt a text");
    const std::string protected_bytes = TakeBytes(output);
    const Checksum checksum = ChecksumOf(protected_bytes);
    return std::wstring(marker) +
           ToBase64(std::string(reinterpret_cast<const char*>(checksum.data()), checksum.size()) + protected_bytes);
}

std::wstring CryptKey::Decrypt(std::wstring_view i_cipher_text) const {
    Checksum checksum{};
    const std::string bytes =
        i_cipher_text.starts_with(marker) ? FromBase64(i_cipher_text.substr(marker.size())) : std::string();
    const std::string_view protected_bytes = std::string_view(bytes).substr(std::min(bytes.size(), checksum.size()));
    std::memcpy(checksum.data(), bytes.data(), bytes.size() - protected_bytes.size());
    if (protected_bytes.empty() || checksum != ChecksumOf(protected_bytes))
        throw Failure(E_INVALIDARG, L"The text was not encrypted here, or has been changed");

    DATA_BLOB input = BlobOf(protected_bytes.data(), protected_bytes.size());
    DATA_BLOB entropy = BlobOf(m_secret.data(), m_secret.size());
    DATA_BLOB output{};
    if (!CryptUnprotectData(&input, nullptr, &entropy, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN, &output))
        throw LastErrorFailure(L"Cannot decrypt a text");
    const std::string clear = TakeBytes(output);
    std::wstring text(clear.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), clear.data(), text.size() * sizeof(wchar_t));
    return text;
}

/// The operating system's protection does not detect every changed byte, so the cipher text carries an HMAC-SHA-256
/// under the key.
CryptKey::Checksum CryptKey::ChecksumOf(std::string_view i_bytes) const {
    Checksum checksum{};
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    NTSTATUS status =
        BCryptOpenAlgorithmProvider(&algorithm, BCRYPT_SHA256_ALGORITHM, nullptr, BCRYPT_ALG_HANDLE_HMAC_FLAG);
    if (status == 0) {
        auto* secret = const_cast<BYTE*>(m_secret.data()); // Both are only read.
        auto* input = reinterpret_cast<BYTE*>(const_cast<char*>(i_bytes.data()));
        status = BCryptHash(algorithm, secret, ULONG{size}, input, static_cast<ULONG>(i_bytes.size()), checksum.data(),
                            ULONG{checksum.size()});
        BCryptCloseAlgorithmProvider(algorithm, 0);
    }
    if (status != 0)
        throw Failure(E_FAIL, L"The system cannot compute a checksum");
    return checksum;
}

} // namespace DevHost
