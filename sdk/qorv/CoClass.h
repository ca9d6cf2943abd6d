#pragma once

#include "qorv/Base.h"

#include <atomic>
#include <concepts>
#include <new>
#include <type_traits>

namespace Qorv {

/// The number of living co-class objects of this module; must be 0 before the host frees the module.
inline std::atomic<ULONG> g_live_objects{0};

/// The module's live-object count, for hosts and tests that look for leaks. Every co-class object's `QueryInterface`
/// returns the module's only counter, which is not counted itself: it stays valid until the module is freed, even after
/// the last object.
struct ILiveObjects : IUnknown {
    static constexpr IID Id = {0x9ef288ca, 0x8d61, 0x447d, {0xab, 0xe5, 0xcd, 0xae, 0xed, 0x2f, 0x90, 0x35}};
    virtual ULONG STDMETHODCALLTYPE GetCount() noexcept = 0;
};

namespace Detail {

class LiveObjects final : public ILiveObjects {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID i_id, void** o_object) noexcept override {
        if (o_object == nullptr)
            return E_POINTER;
        *o_object = i_id == IID_IUnknown || i_id == ILiveObjects::Id ? this : nullptr;
        return *o_object != nullptr ? S_OK : E_NOINTERFACE;
    }
    // It is never deleted.
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    ULONG STDMETHODCALLTYPE GetCount() noexcept override { return g_live_objects.load(); }
};
inline LiveObjects g_live_objects_counter;

/// A dual interface whose dispatch half is unused: plug-in and host call through the vtable.
template <typename Interface>
class WithoutDispatch : public Interface {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* o_count) noexcept override {
        if (o_count == nullptr)
            return E_POINTER;
        *o_count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** o_info) noexcept override {
        if (o_info == nullptr)
            return E_POINTER;
        *o_info = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) noexcept override {
        return E_NOTIMPL;
    }
};

template <typename Interface>
using Implementation =
    std::conditional_t<std::is_base_of_v<IDispatch, Interface>, WithoutDispatch<Interface>, Interface>;

/// The id of an SDK interface (its member `Id`) or of a platform interface.
template <typename Interface>
constexpr const IID& IdOf() noexcept {
    if constexpr (requires { Interface::Id; })
        return Interface::Id;
    else
        return __uuidof(Interface);
}

/// Whether an id names the interface or one that it extends (its member type `Base`).
template <typename Interface>
bool Extends(REFIID i_id) noexcept {
    if (i_id == IdOf<Interface>())
        return true;
    if constexpr (requires { typename Interface::Base; })
        return Extends<typename Interface::Base>(i_id);
    else
        return std::is_base_of_v<IDispatch, Interface> && i_id == IID_IDispatch;
}

} // namespace Detail

/// Base of every COM object: `class Thing final : public Qorv::CoClass<Thing, IThing, IOther>`.
///
/// The reference count starts at 0 and is atomic; the last `Release` deletes the object. `QueryInterface` supports
/// every listed interface and its bases, and IUnknown through the first one. A class that must recognise its own
/// objects among the host's declares a member `static constexpr IID ClassId`, which gives a pointer to the class
/// itself.
template <typename Self, typename First, typename... Others>
class CoClass : public Detail::Implementation<First>, public Detail::Implementation<Others>... {
public:
    CoClass(const CoClass&) = delete;
    CoClass& operator=(const CoClass&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID i_id, void** o_object) noexcept override {
        if (o_object == nullptr)
            return E_POINTER;
        *o_object = Find(i_id);
        if (*o_object != nullptr) {
            AddRef();
            return S_OK;
        }
        if (i_id != ILiveObjects::Id)
            return E_NOINTERFACE;
        *o_object = static_cast<ILiveObjects*>(&Detail::g_live_objects_counter);
        return S_OK;
    }

    template <typename Interface>
    HRESULT QueryInterface(Interface** o_object) noexcept {
        return QueryInterface(Detail::IdOf<Interface>(), reinterpret_cast<void**>(o_object));
    }

    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++m_references; }

    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = --m_references;
        if (left == 0)
            delete static_cast<Self*>(this);
        return left;
    }

protected:
    CoClass() noexcept { ++g_live_objects; }
    // Only `Release` of the class itself deletes, so nothing here is virtual: a virtual destructor would add slots to
    // the interfaces.
    ~CoClass() { --g_live_objects; }

private:
    void* Find(REFIID i_id) noexcept {
        if (i_id == IID_IUnknown)
            return static_cast<First*>(this);
        if constexpr (requires { Self::ClassId; })
            if (i_id == Self::ClassId)
                return static_cast<Self*>(this);
        void* found = nullptr;
        const auto look = [&]<typename Interface>(Interface* i_this) {
            if (found == nullptr && Detail::Extends<Interface>(i_id))
                found = i_this;
        };
        look(static_cast<First*>(this));
        (look(static_cast<Others*>(this)), ...);
        return found;
    }

    std::atomic<ULONG> m_references{0};
};

/// A new object of a co-class with one reference; null if out of memory. Passes on the constructor's exceptions.
template <typename T, typename... Arguments>
[[nodiscard]] ComPtr<T> Create(Arguments&&... i_arguments) {
    return ComPtr<T>(new (std::nothrow) T(std::forward<Arguments>(i_arguments)...));
}

/// The plug-in's own object behind a host pointer; null if the pointer is null or to a foreign object.
template <typename T>
[[nodiscard]] ComPtr<T> OwnObject(IUnknown* i_object) noexcept {
    void* own = nullptr;
    if (i_object == nullptr || FAILED(i_object->QueryInterface(T::ClassId, &own)))
        return nullptr;
    ComPtr<T> result;
    result.Attach(static_cast<T*>(own));
    return result;
}

} // namespace Qorv
