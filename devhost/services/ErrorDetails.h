#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <mutex>
#include <string>

namespace DevHost {

/// Stores what an operation says about its failure; the last report wins. Any thread.
class ErrorDetails final : public Qorv::CoClass<ErrorDetails, Qorv::IQorv_ErrorDetails> {
public:
    HRESULT STDMETHODCALLTYPE SetError(HRESULT i_code, Qorv::PCStr i_text) noexcept override;

    /// Empty when nothing was said.
    std::wstring Text() const;
    HRESULT Code() const;

private:
    mutable std::mutex m_mutex; ///< Guards the two below.
    HRESULT m_code = S_OK;
    std::wstring m_text;
};

} // namespace DevHost
