#pragma once

#include "qorv/AuxService.h"
#include "qorv/Values.h"

class HostServices;

/// Keeps secrets in a settings dictionary, encrypted with the host's key for this plug-in. The host does all the
/// cryptography.
namespace CabEncryptor {

/// Encrypts `value` (null is the empty text) and stores it in the field. If encryption fails, the field does not
/// change.
HRESULT SaveEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                            const wchar_t* value) noexcept;

/// Reads the field and decrypts it. A text that the host did not encrypt is returned unchanged: it was stored by hand,
/// or before fields were encrypted.
HRESULT LoadEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                            Qorv::Bstr& output) noexcept;

} // namespace CabEncryptor
