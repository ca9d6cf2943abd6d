#pragma once

#include "qorv/AuxService.h"
#include "qorv/CoClass.h"

namespace DevHost {

/// The service "AUX". Any thread.
class AuxiliaryService final : public Qorv::CoClass<AuxiliaryService, Qorv::IAUX_Inst> {
public:
    HRESULT STDMETHODCALLTYPE CreateString(Qorv::PCStr i_text, Qorv::IAUX_String** o_string) noexcept override;
    HRESULT STDMETHODCALLTYPE EncryptString(Qorv::IAUX_CryptKey* i_key, Qorv::IAUX_String* i_string,
                                            Qorv::IAUX_String** o_encrypted) noexcept override;
    HRESULT STDMETHODCALLTYPE DecryptString(Qorv::IAUX_CryptKey* i_key, Qorv::IAUX_String* i_string,
                                            Qorv::IAUX_String** o_decrypted) noexcept override;
};

} // namespace DevHost
