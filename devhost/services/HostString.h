#pragma once

#include "qorv/AuxService.h"
#include "qorv/CoClass.h"

#include <string>
#include <string_view>

namespace DevHost {

/// The host's string object.
class HostString final : public Qorv::CoClass<HostString, Qorv::IAUX_String> {
public:
    explicit HostString(std::wstring_view i_text) : m_text(i_text) {}

    HRESULT STDMETHODCALLTYPE get_Value(BSTR* o_value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_IsEmpty(VARIANT_BOOL* o_is_empty) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Length(ULONG* o_length) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR i_value) noexcept override;
    /// Null text is the empty string; a negative length means up to the terminator.
    HRESULT STDMETHODCALLTYPE SetValue(Qorv::PCStr i_text, LONG i_length) noexcept override;

private:
    std::wstring m_text;
};

} // namespace DevHost
