#include "core/host/CabEncryptor.h"

#include "core/host/Cab.h"
#include "core/host/HostServices.h"
#include "core/trace/Check.h"

using Qorv::Bstr;
using Qorv::ComPtr;
using Qorv::IAUX_CryptKey;
using Qorv::IAUX_String;

HRESULT CabEncryptor::SaveEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                                          const wchar_t* value) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(i_plugin != nullptr, E_POINTER);
        ComPtr<IAUX_String> pToken;
        CHECK_HRESULT(i_plugin->m_aux_inst->CreateString(nullptr, &pToken));
        const Bstr bsToken(value != nullptr ? value : L"");
        CHECK_RETURN(bsToken.m_str != nullptr, E_OUTOFMEMORY);
        CHECK_HRESULT(pToken->put_Value(bsToken));
        ComPtr<IAUX_CryptKey> pCKey;
        CHECK_HRESULT(i_plugin->m_qorv_inst->GetCryptKey(i_plugin, VARIANT_FALSE, &pCKey));
        ComPtr<IAUX_String> pTokenEnc;
        CHECK_HRESULT(i_plugin->m_aux_inst->EncryptString(pCKey, pToken, &pTokenEnc));
        Bstr bsValue;
        if (pTokenEnc != nullptr)
            CHECK_HRESULT(pTokenEnc->get_Value(&bsValue));
        const Qorv::Variant v(std::move(bsValue));
        const CabDictionary CabNode(cab);
        CHECK_HRESULT(CabNode[pzsFieldName].p->put_v(v));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT CabEncryptor::LoadEncryptedString(HostServices* i_plugin, Qorv::IAUX_CabNode* cab, const wchar_t* pzsFieldName,
                                          Bstr& output) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(i_plugin != nullptr, E_POINTER);
        ComPtr<IAUX_String> pToken;
        CHECK_HRESULT(i_plugin->m_aux_inst->CreateString(nullptr, &pToken));
        const CabDictionary CabNode(cab);
        Bstr val;
        CHECK_HRESULT(CabNode[pzsFieldName].p->get_String(&val));
        CHECK_HRESULT(pToken->SetValue(val.m_str, val.Length()));
        ComPtr<IAUX_CryptKey> pCKey;
        CHECK_HRESULT(i_plugin->m_qorv_inst->GetCryptKey(i_plugin, VARIANT_FALSE, &pCKey));
        ComPtr<IAUX_String> pTokenDec;
        HRESULT result = i_plugin->m_aux_inst->DecryptString(pCKey, pToken, &pTokenDec);
        if (result == E_INVALIDARG) { // Stored in clear.
            pTokenDec = pToken;
            result = S_OK;
        }
        CHECK_HRESULT(result);
        val = Bstr();
        if (pTokenDec != nullptr)
            CHECK_HRESULT(pTokenDec->get_Value(&val));
        output = std::move(val);
        return TRACE_RESULT(S_OK);
    };
}
