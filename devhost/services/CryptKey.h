#pragma once

#include "qorv/AuxService.h"
#include "qorv/CoClass.h"

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

namespace DevHost {

/// A plug-in's key. Texts are protected by the operating system for the user who is signed in to it, and by the key, so
/// that they serve in one profile only.
class CryptKey final : public Qorv::CoClass<CryptKey, Qorv::IAUX_CryptKey> {
public:
    static constexpr IID ClassId = {0xb9fd2f18, 0x8ae4, 0x4a0c, {0x9d, 0x51, 0x2d, 0xd0, 0x24, 0x1f, 0x0d, 0xfa}};
    static constexpr std::size_t size = 32;

    /// The key of a file; a new one, kept there, when there is none and `i_create` is set; else null. Throws a
    /// `Failure` for a damaged file, which stays: the texts that it protects could not be read with another key.
    static Qorv::ComPtr<CryptKey> Load(const std::filesystem::path& i_path, bool i_create);

    explicit CryptKey(const std::array<BYTE, size>& i_secret) : m_secret(i_secret) {}

    /// The cipher text, in printable characters.
    std::wstring Encrypt(std::wstring_view i_text) const;

    /// The text again. Throws a `Failure`: E_INVALIDARG for what was not encrypted with this key or was changed since,
    /// the system's code when the system's user is another one.
    std::wstring Decrypt(std::wstring_view i_cipher_text) const;

private:
    using Checksum = std::array<BYTE, 32>;
    Checksum ChecksumOf(std::string_view i_bytes) const;

    std::array<BYTE, size> m_secret;
};

} // namespace DevHost
