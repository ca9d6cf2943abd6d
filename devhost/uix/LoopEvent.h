#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

namespace DevHost {

/// One message of a modal loop, for its monitors.
class LoopEvent final : public Qorv::CoClass<LoopEvent, Qorv::IUIX_LoopEvent> {
public:
    explicit LoopEvent(const MSG& i_message) : m_message(i_message) {}

    bool IsHandled() const noexcept { return m_is_handled; }

    HRESULT STDMETHODCALLTYPE get_Window(HWND* o_window) noexcept override { return Get(m_message.hwnd, o_window); }
    HRESULT STDMETHODCALLTYPE get_Message(UINT* o_message) noexcept override {
        return Get(m_message.message, o_message);
    }
    HRESULT STDMETHODCALLTYPE get_WParam(WPARAM* o_w_param) noexcept override {
        return Get(m_message.wParam, o_w_param);
    }
    HRESULT STDMETHODCALLTYPE get_LParam(LPARAM* o_l_param) noexcept override {
        return Get(m_message.lParam, o_l_param);
    }
    HRESULT STDMETHODCALLTYPE put_Handled(VARIANT_BOOL i_is_handled) noexcept override {
        m_is_handled = i_is_handled != VARIANT_FALSE;
        return S_OK;
    }

private:
    template <typename T>
    static HRESULT Get(T i_value, T* o_value) noexcept {
        if (o_value == nullptr)
            return E_POINTER;
        *o_value = i_value;
        return S_OK;
    }

    MSG m_message;
    bool m_is_handled = false;
};

} // namespace DevHost
