#include "services/ErrorDetails.h"

#include "base/Failure.h"

namespace DevHost {

HRESULT STDMETHODCALLTYPE ErrorDetails::SetError(HRESULT i_code, Qorv::PCStr i_text) noexcept {
    return Answer([&] {
        const std::lock_guard lock(m_mutex);
        m_text = i_text != nullptr ? i_text : L"";
        m_code = i_code;
    });
}

std::wstring ErrorDetails::Text() const {
    const std::lock_guard lock(m_mutex);
    return m_text;
}

HRESULT ErrorDetails::Code() const {
    const std::lock_guard lock(m_mutex);
    return m_code;
}

} // namespace DevHost
