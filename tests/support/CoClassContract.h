#pragma once

#include "qorv/CoClass.h"
#include "support/Outcome.h"

#include <initializer_list>

namespace Tests {

/// The rules for every COM object, tested on one with the given interface ids.
inline void ExpectCoClassContract(IUnknown* i_object, std::initializer_list<IID> i_ids) {
    static constexpr IID unknown_id = {0x4a5f6c01, 0x8d52, 0x4a53, {0x95, 0x8e, 0x1f, 0x3a, 0x0a, 0x70, 0x2d, 0x11}};
    const auto references = [&] {
        i_object->AddRef();
        return i_object->Release();
    };
    const ULONG references_before = references();
    Qorv::ComPtr<IUnknown> identity;
    ASSERT_HRESULT_SUCCEEDED(i_object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity)));
    for (const IID& id : i_ids) {
        Qorv::ComPtr<IUnknown> found, identity_again;
        EXPECT_HRESULT(S_OK, i_object->QueryInterface(id, reinterpret_cast<void**>(&found)));
        ASSERT_NE(found, nullptr);
        EXPECT_HRESULT(S_OK, found->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity_again)));
        EXPECT_EQ(identity_again, identity) << "one object, one identity";
        EXPECT_HRESULT(E_POINTER, found->QueryInterface(id, nullptr));
    }
    void* none = i_object;
    EXPECT_HRESULT(E_NOINTERFACE, i_object->QueryInterface(unknown_id, &none));
    EXPECT_EQ(none, nullptr);
    EXPECT_HRESULT(E_POINTER, i_object->QueryInterface(IID_IUnknown, nullptr));

    void* counter = nullptr; // Not counted itself: nothing to release.
    EXPECT_HRESULT(S_OK, i_object->QueryInterface(Qorv::ILiveObjects::Id, &counter));
    EXPECT_GT(static_cast<Qorv::ILiveObjects*>(counter)->GetCount(), 0u);
    identity.Reset();
    EXPECT_EQ(references(), references_before);
}

} // namespace Tests
