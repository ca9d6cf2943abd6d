// The SDK's co-class template, smart pointer and value types.

#include "core/EventsHandler.h"
#include "core/Plugin.h"
#include "core/host/ThreadSafeCall.h"
#include "qorv/AuxService.h"
#include "qorv/Values.h"
#include "services/HostString.h"
#include "support/CoClassContract.h"

using namespace Tests;
using Qorv::Bstr;
using Qorv::ComPtr;
using Qorv::Variant;

namespace {

/// Two interfaces, one of them dual.
class Thing final : public Qorv::CoClass<Thing, Qorv::IQorv_ThreadSafeCallback, Qorv::IEventHandler> {
public:
    static constexpr IID ClassId = {0x1d6f1d5a, 0x59a1, 0x4b0e, {0xa7, 0x5c, 0x30, 0x0e, 0x0d, 0x86, 0x6a, 0x5e}};
    HRESULT STDMETHODCALLTYPE OnExecute() noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnEvent(ULONG, IUnknown*, IUnknown*) noexcept override { return S_OK; }
};

class ValueTest : public testing::Test {
protected:
    ~ValueTest() override { EXPECT_EQ(Qorv::g_live_objects, m_before) << "an object was not released"; }

    const ULONG m_before = Qorv::g_live_objects;
};

TEST_F(ValueTest, CoClassesKeepTheirContract) {
    const auto thing = Qorv::Create<Thing>();
    ExpectCoClassContract(static_cast<Qorv::IEventHandler*>(thing),
                          {Qorv::IQorv_ThreadSafeCallback::Id, Qorv::IEventHandler::Id, IID_IDispatch});
    ExpectCoClassContract(Qorv::Create<DevHost::HostString>(L""),
                          {Qorv::IAUX_String::Id, Qorv::IAUX_ReadOnlyString::Id});
    ExpectCoClassContract(Qorv::Create<Plugin>(), {Qorv::IQorv_Plugin::Id});
    ExpectCoClassContract(Qorv::Create<EventsHandler>(nullptr), {Qorv::IEventHandler::Id, IID_IDispatch});
    ExpectCoClassContract(Qorv::Create<ThreadSafeCall>([] {}), {Qorv::IQorv_ThreadSafeCallback::Id});
}

TEST_F(ValueTest, ADualInterfaceDispatchesNothing) {
    const auto thing = Qorv::Create<Thing>();
    UINT count = 7;
    EXPECT_HRESULT(S_OK, thing->GetTypeInfoCount(&count));
    EXPECT_EQ(count, 0u);
    EXPECT_HRESULT(E_POINTER, thing->GetTypeInfoCount(nullptr));
    EXPECT_HRESULT(E_NOTIMPL, thing->Invoke(0, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(ValueTest, AClassKnowsItsOwnObjects) {
    const auto thing = Qorv::Create<Thing>();
    IUnknown* const unknown = static_cast<Qorv::IEventHandler*>(thing);
    EXPECT_EQ(Qorv::OwnObject<Thing>(unknown), thing);
    EXPECT_EQ(Qorv::OwnObject<Thing>(nullptr), nullptr);
    EXPECT_EQ(Qorv::OwnObject<Thing>(Qorv::Create<DevHost::HostString>(L"")), nullptr);
}

TEST_F(ValueTest, PointersCountReferences) {
    const auto references = [](Thing* i_thing) {
        i_thing->AddRef();
        return i_thing->Release();
    };
    ComPtr<Thing> first = Qorv::Create<Thing>();
    EXPECT_EQ(references(first), 1u);
    {
        const ComPtr<Thing> copy = first;
        const ComPtr<Qorv::IEventHandler> base = first;
        EXPECT_EQ(references(first), 3u);
        const auto& same = first;
        first = same;
        EXPECT_EQ(references(first), 3u) << "self assignment";
        EXPECT_EQ(base.As<Qorv::IQorv_ThreadSafeCallback>(), static_cast<Qorv::IQorv_ThreadSafeCallback*>(first.p));
        EXPECT_EQ(base.As<Qorv::IAUX_String>(), nullptr);
        EXPECT_EQ(references(first), 3u);
    }
    ComPtr<Thing> moved = std::move(first);
    EXPECT_EQ(first.p, nullptr); // NOLINT(bugprone-use-after-move): that is what is tested.
    EXPECT_EQ(references(moved), 1u);
    Thing* out = nullptr;
    moved.CopyTo(&out);
    EXPECT_EQ(references(moved), 2u);
    first.Attach(out);
    EXPECT_EQ(references(moved), 2u) << "attaching takes the reference over";
    *&first = nullptr; // An out argument: the old pointer is released first.
    EXPECT_EQ(references(moved), 1u);
    EXPECT_NE(moved, Qorv::Create<Thing>()) << "different objects are not equal";
}

TEST_F(ValueTest, StringsAndVariantsOwnTheirText) {
    const std::wstring_view with_nul(L"a\0b", 3);
    Bstr text(with_nul);
    EXPECT_EQ(text.View(), with_nul);
    EXPECT_EQ(Bstr().View(), L"") << "null is the empty text";
    Bstr moved = std::move(text);
    EXPECT_EQ(moved.Length(), 3u);
    *&moved = SysAllocString(L"new");
    EXPECT_EQ(moved.View(), L"new");

    Variant variant(std::move(moved));
    EXPECT_EQ(variant->vt, VT_BSTR);
    EXPECT_EQ(variant.Text(), L"new");
    EXPECT_EQ((&variant)->vt, VT_EMPTY) << "an out argument: what was held is cleared first";
    EXPECT_EQ(Variant(LONG{-5})->lVal, -5);
    EXPECT_EQ(Variant(LONG{-5}).Text(), L"");
    const Variant object(static_cast<Qorv::IEventHandler*>(Qorv::Create<Thing>()));
    EXPECT_EQ(object->vt, VT_UNKNOWN);
    EXPECT_EQ(Qorv::g_live_objects, m_before + 1);
}

} // namespace
