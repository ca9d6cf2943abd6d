#pragma once

#include "qorv/Base.h"

#include <string_view>

namespace Qorv {

/// An owned BSTR. A null one and an empty one are the same text.
class Bstr {
public:
    Bstr() noexcept = default;
    /// `m_str` stays null if the allocation fails: check with `m_str != nullptr`.
    explicit Bstr(std::wstring_view i_text) noexcept
        : m_str(SysAllocStringLen(i_text.data(), static_cast<UINT>(i_text.size()))) {}
    Bstr(const Bstr&) = delete;
    Bstr(Bstr&& io_other) noexcept : m_str(io_other.Detach()) {}
    Bstr& operator=(Bstr i_other) noexcept {
        std::swap(m_str, i_other.m_str);
        return *this;
    }
    ~Bstr() { SysFreeString(m_str); }

    operator BSTR() const noexcept { return m_str; }
    UINT Length() const noexcept { return SysStringLen(m_str); }
    std::wstring_view View() const noexcept { return {m_str != nullptr ? m_str : L"", Length()}; }

    /// For out arguments: frees the held string first.
    BSTR* operator&() noexcept {
        SysFreeString(Detach());
        return &m_str;
    }
    /// Gives up the string: the caller frees it.
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(m_str, nullptr); }

    BSTR m_str = nullptr;
};

/// An owned VARIANT, empty at first.
class Variant {
public:
    Variant() noexcept { VariantInit(&m_value); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&m_value); }

    /// Takes over the string.
    explicit Variant(Bstr i_text) noexcept : Variant() {
        m_value.vt = VT_BSTR;
        m_value.bstrVal = i_text.Detach();
    }
    explicit Variant(LONG i_number) noexcept : Variant() {
        m_value.vt = VT_I4;
        m_value.lVal = i_number;
    }
    explicit Variant(IUnknown* i_object) noexcept : Variant() {
        m_value.vt = VT_UNKNOWN;
        m_value.punkVal = i_object;
        if (i_object != nullptr)
            i_object->AddRef();
    }

    operator const VARIANT&() const noexcept { return m_value; }
    const VARIANT* operator->() const noexcept { return &m_value; }
    /// The text of a string variant, empty for every other type.
    std::wstring_view Text() const noexcept {
        return m_value.vt == VT_BSTR && m_value.bstrVal != nullptr
                   ? std::wstring_view{m_value.bstrVal, SysStringLen(m_value.bstrVal)}
                   : std::wstring_view{};
    }
    /// For out arguments: clears the held value first.
    VARIANT* operator&() noexcept {
        VariantClear(&m_value);
        return &m_value;
    }

    VARIANT m_value;
};

} // namespace Qorv
