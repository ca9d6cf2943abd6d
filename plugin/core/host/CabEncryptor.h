#pragma once

#include "qorv/AuxService.h"
#include "qorv/Values.h"

class HostServices;

/// Keeps secrets in a settings dictionary, encrypted with the host's key for this plug-in. All cryptography is the
/// host's.
namespace CabEncryptor {

/// Encrypts `value` (null is the empty text) and stores it in the field. A failure before that leaves the field as it
/// was.
HRESULT SaveEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                            const wchar_t* value) noexcept;

/// Reads the field and decrypts it. A text that the host did not encrypt is taken as it stands: it was stored by hand,
/// or before fields were encrypted.
HRESULT LoadEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                            Qorv::Bstr& output) noexcept;

} // namespace CabEncryptor
