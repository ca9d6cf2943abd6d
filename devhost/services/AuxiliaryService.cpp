#include "services/AuxiliaryService.h"

#include "base/Failure.h"
#include "qorv/Values.h"
#include "services/CryptKey.h"
#include "services/HostString.h"

namespace DevHost {
namespace {

HRESULT NewString(std::wstring_view i_text, Qorv::IAUX_String** o_string) {
    *o_string = Qorv::Create<HostString>(i_text).Detach();
    return *o_string != nullptr ? S_OK : E_OUTOFMEMORY;
}

/// Makes a new string from another one with a key. E_POINTER also for a missing or foreign key: E_INVALIDARG is only
/// about the text.
template <typename Convert>
HRESULT ConvertString(Qorv::IAUX_CryptKey* i_key, Qorv::IAUX_String* i_string, Qorv::IAUX_String** o_converted,
                      Convert&& i_convert) noexcept {
    if (o_converted == nullptr)
        return E_POINTER;
    *o_converted = nullptr;
    return Answer([&] {
        const auto key = Qorv::OwnObject<CryptKey>(i_key);
        if (key == nullptr || i_string == nullptr)
            return E_POINTER;
        Qorv::Bstr text;
        Check(i_string->get_Value(&text), L"Cannot read a string");
        return NewString(i_convert(*key, text.View()), o_converted);
    });
}

} // namespace

HRESULT STDMETHODCALLTYPE AuxiliaryService::CreateString(Qorv::PCStr i_text, Qorv::IAUX_String** o_string) noexcept {
    if (o_string == nullptr)
        return E_POINTER;
    return Answer([&] { return NewString(i_text != nullptr ? i_text : L"", o_string); });
}

HRESULT STDMETHODCALLTYPE AuxiliaryService::EncryptString(Qorv::IAUX_CryptKey* i_key, Qorv::IAUX_String* i_string,
                                                          Qorv::IAUX_String** o_encrypted) noexcept {
    return ConvertString(i_key, i_string, o_encrypted,
                         [](const CryptKey& i_own, std::wstring_view i_text) { return i_own.Encrypt(i_text); });
}

HRESULT STDMETHODCALLTYPE AuxiliaryService::DecryptString(Qorv::IAUX_CryptKey* i_key, Qorv::IAUX_String* i_string,
                                                          Qorv::IAUX_String** o_decrypted) noexcept {
    return ConvertString(i_key, i_string, o_decrypted,
                         [](const CryptKey& i_own, std::wstring_view i_text) { return i_own.Decrypt(i_text); });
}

} // namespace DevHost
