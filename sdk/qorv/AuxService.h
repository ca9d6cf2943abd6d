#pragma once

#include "qorv/Base.h"

// The host's auxiliary service ("AUX"): strings, settings dictionaries, encryption.

namespace Qorv {

/// A read-only string object.
struct IAUX_ReadOnlyString : IUnknown {
    static constexpr IID Id = {0x51b088af, 0x12d4, 0x4e54, {0x93, 0xbf, 0x98, 0xb4, 0x93, 0x0e, 0x2a, 0xc3}};
    virtual HRESULT STDMETHODCALLTYPE get_Value(BSTR* o_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsEmpty(VARIANT_BOOL* o_is_empty) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Length(ULONG* o_length) = 0;
};

/// A string object of the host.
struct IAUX_String : IAUX_ReadOnlyString {
    using Base = IAUX_ReadOnlyString;
    static constexpr IID Id = {0x2e5811fc, 0x1cfd, 0x43fb, {0xad, 0x64, 0x98, 0xd3, 0x28, 0xf6, 0x01, 0x0f}};
    /// A null BSTR is the empty string.
    virtual HRESULT STDMETHODCALLTYPE put_Value(BSTR i_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetValue(PCStr i_text, LONG i_length) = 0;
};

/// The host's key for one plug-in; opaque.
struct IAUX_CryptKey : IUnknown {
    static constexpr IID Id = {0xbb58942e, 0xe1f1, 0x4b37, {0xb7, 0x38, 0x9a, 0x56, 0xfa, 0xc1, 0x4b, 0xd3}};
};

/// Type codes of a settings value.
enum AUX_CabType : LONG {
    AUX_CabType_Empty = 0,
    AUX_CabType_Int = 2,
    AUX_CabType_String = 5,
    AUX_CabType_Dictionary = 6,
    AUX_CabType_Array = 7,
    AUX_CabType_IUnknown = 8,
};

/// One node of a settings dictionary ("cab"): the dictionary, or a value in it. The host stores it; a dictionary
/// accepts only the items that its template declares. Values are read and written on the thread that owns the
/// dictionary.
struct IAUX_CabNode : IUnknown {
    static constexpr IID Id = {0x8a559bb4, 0x118c, 0x4ca6, {0xa9, 0x9b, 0x25, 0xf3, 0xa7, 0x98, 0xb8, 0xda}};
    /// Gives a dictionary its template (a `CabTemplate` document in UTF-8) by the id of the document's root; adds the
    /// items that are missing, empty. E_INVALIDARG for an unusable document or id.
    virtual HRESULT STDMETHODCALLTYPE SetTemplate2(const void* i_data, LONG i_size, PCStr i_root_id) = 0;
    /// An item of a dictionary: E_INVALIDARG for one that the template does not declare.
    virtual HRESULT STDMETHODCALLTYPE get_Item(PCStr i_id, IAUX_CabNode** o_item) = 0;
    /// The type of the value that the node holds now (`AUX_CabType`).
    virtual HRESULT STDMETHODCALLTYPE get_Type(LONG* o_type) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_v(VARIANT* o_value) = 0;
    /// E_INVALIDARG for a value of a type that the template does not allow.
    virtual HRESULT STDMETHODCALLTYPE put_v(const VARIANT& i_value) = 0;
    /// The value as text; an empty value is the empty text. E_INVALIDARG for a value of another type.
    virtual HRESULT STDMETHODCALLTYPE get_String(BSTR* o_value) = 0;
};

/// The service itself.
struct IAUX_Inst : IUnknown {
    static constexpr IID Id = {0x219e466c, 0xf96d, 0x46aa, {0x87, 0x97, 0x33, 0xa9, 0x17, 0x24, 0xbe, 0x9c}};
    /// A new string object; null text makes an empty one.
    virtual HRESULT STDMETHODCALLTYPE CreateString(PCStr i_text, IAUX_String** o_string) = 0;
    virtual HRESULT STDMETHODCALLTYPE EncryptString(IAUX_CryptKey* i_key, IAUX_String* i_string,
                                                    IAUX_String** o_encrypted) = 0;
    /// E_INVALIDARG for text that isn't the service's own cipher text.
    virtual HRESULT STDMETHODCALLTYPE DecryptString(IAUX_CryptKey* i_key, IAUX_String* i_string,
                                                    IAUX_String** o_decrypted) = 0;
};

} // namespace Qorv
