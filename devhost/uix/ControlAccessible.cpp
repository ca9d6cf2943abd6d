#include "uix/ControlAccessible.h"

#include "base/Failure.h"
#include "qorv/CoClass.h"
#include "wine/WineNetwork.h"

#include <oleacc.h>

#include <array>

namespace DevHost {
namespace {

/// Passes everything on to the platform's object, except for the name and role of the control itself.
class ControlAccessible final : public Qorv::CoClass<ControlAccessible, IAccessible> {
public:
    ControlAccessible(Qorv::ComPtr<IAccessible> i_platform, std::wstring i_name, LONG i_role)
        : m_platform(std::move(i_platform)), m_name(std::move(i_name)), m_role(i_role) {}

    HRESULT STDMETHODCALLTYPE get_accName(VARIANT i_child, BSTR* o_name) noexcept override {
        return IsSelf(i_child) ? AnswerText(m_name, o_name) : m_platform->get_accName(i_child, o_name);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT i_child, VARIANT* o_role) noexcept override {
        if (!IsSelf(i_child))
            return m_platform->get_accRole(i_child, o_role);
        if (o_role == nullptr)
            return E_POINTER;
        o_role->vt = VT_I4;
        o_role->lVal = m_role;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** o_parent) noexcept override {
        return m_platform->get_accParent(o_parent);
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(long* o_count) noexcept override {
        return m_platform->get_accChildCount(o_count);
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT i_child, IDispatch** o_child) noexcept override {
        return m_platform->get_accChild(i_child, o_child);
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT i_child, BSTR* o_value) noexcept override {
        return m_platform->get_accValue(i_child, o_value);
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT i_child, BSTR* o_description) noexcept override {
        return m_platform->get_accDescription(i_child, o_description);
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT i_child, VARIANT* o_state) noexcept override {
        return m_platform->get_accState(i_child, o_state);
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT i_child, BSTR* o_help) noexcept override {
        return m_platform->get_accHelp(i_child, o_help);
    }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* o_file, VARIANT i_child, long* o_topic) noexcept override {
        return m_platform->get_accHelpTopic(o_file, i_child, o_topic);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT i_child, BSTR* o_keys) noexcept override {
        return m_platform->get_accKeyboardShortcut(i_child, o_keys);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* o_child) noexcept override {
        return m_platform->get_accFocus(o_child);
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* o_children) noexcept override {
        return m_platform->get_accSelection(o_children);
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT i_child, BSTR* o_action) noexcept override {
        return m_platform->get_accDefaultAction(i_child, o_action);
    }
    HRESULT STDMETHODCALLTYPE accSelect(long i_flags, VARIANT i_child) noexcept override {
        return m_platform->accSelect(i_flags, i_child);
    }
    HRESULT STDMETHODCALLTYPE accLocation(long* o_left, long* o_top, long* o_width, long* o_height,
                                          VARIANT i_child) noexcept override {
        return m_platform->accLocation(o_left, o_top, o_width, o_height, i_child);
    }
    HRESULT STDMETHODCALLTYPE accNavigate(long i_way, VARIANT i_start, VARIANT* o_end) noexcept override {
        return m_platform->accNavigate(i_way, i_start, o_end);
    }
    HRESULT STDMETHODCALLTYPE accHitTest(long i_left, long i_top, VARIANT* o_child) noexcept override {
        return m_platform->accHitTest(i_left, i_top, o_child);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT i_child) noexcept override {
        return m_platform->accDoDefaultAction(i_child);
    }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT i_child, BSTR i_name) noexcept override {
        return m_platform->put_accName(i_child, i_name);
    }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT i_child, BSTR i_value) noexcept override {
        return m_platform->put_accValue(i_child, i_value);
    }

private:
    static bool IsSelf(const VARIANT& i_child) noexcept { return i_child.vt == VT_I4 && i_child.lVal == CHILDID_SELF; }

    Qorv::ComPtr<IAccessible> m_platform;
    std::wstring m_name;
    LONG m_role;
};

/// The platform knows its own classes by their names; others get its general object, as do all under Wine, which
/// lacks the first function.
Qorv::ComPtr<IAccessible> PlatformAccessible(HWND i_control) {
    std::array<wchar_t, 64> window_class{};
    GetClassNameW(i_control, window_class.data(), int{window_class.size()});
    Qorv::ComPtr<IAccessible> accessible;
    // Not IID_IAccessible: the library's symbol of that name is not the id.
    void** const place = reinterpret_cast<void**>(&accessible);
    constexpr LONG client = static_cast<LONG>(OBJID_CLIENT);
    if (IsWine() ||
        FAILED(CreateStdAccessibleProxyW(i_control, window_class.data(), client, __uuidof(IAccessible), place)))
        CreateStdAccessibleObject(i_control, client, __uuidof(IAccessible), place);
    return accessible;
}

} // namespace

LRESULT AnswerScreenReader(HWND i_control, WPARAM i_wparam, const std::wstring& i_name, LONG i_role) {
    auto platform = PlatformAccessible(i_control);
    if (platform == nullptr)
        return 0;
    const auto accessible = Qorv::Create<ControlAccessible>(std::move(platform), i_name, i_role);
    return accessible != nullptr ? LresultFromObject(__uuidof(IAccessible), i_wparam, accessible.Get()) : 0;
}

} // namespace DevHost
