#pragma once

#include "qorv/AuxService.h"
#include "qorv/CoClass.h"

#include <string>

namespace Utility {

/// A string object for the host. Its value never changes, so any thread may read it.
class QorvString final : public Qorv::CoClass<QorvString, Qorv::IAUX_ReadOnlyString> {
public:
    explicit QorvString(std::wstring i_value);
    ~QorvString();

    HRESULT STDMETHODCALLTYPE get_Value(BSTR* o_value) noexcept override;
    HRESULT STDMETHODCALLTYPE get_IsEmpty(VARIANT_BOOL* o_is_empty) noexcept override;
    /// In UTF-16 units.
    HRESULT STDMETHODCALLTYPE get_Length(ULONG* o_length) noexcept override;

private:
    const std::wstring m_value;
};

} // namespace Utility
