#include "afs/QorvString.h"

#include "core/trace/Check.h"
#include "qorv/Values.h"

namespace Utility {

QorvString::QorvString(std::wstring i_value) : m_value(std::move(i_value)) {
    TRACE_FUNCTION();
}

QorvString::~QorvString() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE QorvString::get_Value(BSTR* o_value) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_value != nullptr, E_POINTER);
    *o_value = Qorv::Bstr(m_value).Detach();
    CHECK_RETURN(*o_value != nullptr, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE QorvString::get_IsEmpty(VARIANT_BOOL* o_is_empty) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_is_empty != nullptr, E_POINTER);
    *o_is_empty = m_value.empty() ? VARIANT_TRUE : VARIANT_FALSE;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE QorvString::get_Length(ULONG* o_length) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_length != nullptr, E_POINTER);
    *o_length = static_cast<ULONG>(m_value.size());
    return TRACE_RESULT(S_OK);
}

} // namespace Utility
