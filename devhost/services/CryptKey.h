#pragma once

#include "qorv/AuxService.h"
#include "qorv/CoClass.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

namespace DevHost {

/// A plug-in's key. Texts are protected by the operating system for the signed-in user, and by the key, so that they
/// work in one profile only.
class CryptKey final : public Qorv::CoClass<CryptKey, Qorv::IAUX_CryptKey> {
public:
    static constexpr IID ClassId = {0xb9fd2f18, 0x8ae4, 0x4a0c, {0x9d, 0x51, 0x2d, 0xd0, 0x24, 0x1f, 0x0d, 0xfa}};
    static constexpr std::size_t size = 32;

    /// Loads the key from a file. If there is none, creates and saves one if `i_create` is set, else returns null.
    /// Throws a `Failure` for a damaged file and leaves it alone: another key could not decrypt the texts it protects.
    static Qorv::ComPtr<CryptKey> Load(const std::filesystem::path& i_path, bool i_create);

    explicit CryptKey(const std::array<BYTE, size>& i_secret) : m_secret(i_secret) {}

    /// The cipher text, in printable characters.
    std::wstring Encrypt(std::wstring_view i_text) const;

    /// The decrypted text. Throws a `Failure`: E_INVALIDARG for text that was not encrypted with this key or has been
    /// changed, the system's code if the system's user is a different one.
    std::wstring Decrypt(std::wstring_view i_cipher_text) const;

private:
    using Checksum = std::array<BYTE, 32>;
    Checksum ChecksumOf(std::string_view i_bytes) const;

    std::array<BYTE, size> m_secret;
};

} // namespace DevHost
