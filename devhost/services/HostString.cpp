#include "services/HostString.h"

#include "base/Failure.h"

namespace DevHost {

HRESULT STDMETHODCALLTYPE HostString::get_Value(BSTR* o_value) noexcept {
    return AnswerText(m_text, o_value);
}

HRESULT STDMETHODCALLTYPE HostString::get_IsEmpty(VARIANT_BOOL* o_is_empty) noexcept {
    if (o_is_empty == nullptr)
        return E_POINTER;
    *o_is_empty = m_text.empty() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE HostString::get_Length(ULONG* o_length) noexcept {
    if (o_length == nullptr)
        return E_POINTER;
    *o_length = static_cast<ULONG>(m_text.size());
    return S_OK;
}

HRESULT STDMETHODCALLTYPE HostString::put_Value(BSTR i_value) noexcept {
    return SetValue(i_value, static_cast<LONG>(SysStringLen(i_value)));
}

HRESULT STDMETHODCALLTYPE HostString::SetValue(Qorv::PCStr i_text, LONG i_length) noexcept {
    return Answer([&] {
        if (i_text == nullptr)
            m_text.clear();
        else if (i_length < 0)
            m_text = i_text;
        else
            m_text.assign(i_text, static_cast<std::size_t>(i_length));
    });
}

} // namespace DevHost
