#include "core/host/MessageBox.h"

#include "core/host/ModalOwner.h"
#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"
#include "qorv/Values.h"

#include <vector>

using Qorv::IUIX_Inst;

namespace {

constexpr wchar_t title_id[] = L"db.str.fileSystemName";

std::wstring LocalizedText(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id) {
    TRACE_FUNCTION();
    Qorv::Bstr text;
    return SUCCEEDED(host_instance->GetLocalStr(i_id, &text)) ? std::wstring(text.View()) : std::wstring(i_id);
}

HRESULT ShowOnMainThread(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                         std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner) {
    TRACE_FUNCTION();
    std::vector<std::wstring> captions;
    captions.reserve(i_buttons.size());
    for (const Qorv::PCStr id : i_buttons)
        captions.push_back(LocalizedText(host_instance, id));
    std::vector<Qorv::PCStr> buttons;
    buttons.reserve(captions.size());
    for (const std::wstring& caption : captions)
        buttons.push_back(caption.c_str());
    const std::wstring title = LocalizedText(host_instance, title_id);

    Qorv::ComPtr<IUIX_Inst> uix_instance;
    CHECK_HRESULT(host_instance->GetExtension(L"UIX", (IUnknown**)&uix_instance));
    const Qorv::UIX_MsgBoxParameters parameters{
        .owner = i_owner != nullptr ? i_owner : Ui::ModalOwner(host_instance),
        .title = title.c_str(),
        .text = i_text.c_str(),
        .icon = i_icon,
        .buttons = buttons.data(),
        .button_count = static_cast<ULONG>(buttons.size()),
    };
    CHECK_HRESULT(uix_instance->ShowMsgBox(&parameters, &o_answer));
    return TRACE_RESULT(S_OK);
}

} // namespace

std::wstring Ui::FormatString(Qorv::IQorv_Inst* host_instance, Qorv::PCStr i_id,
                              std::initializer_list<std::wstring_view> i_arguments) {
    TRACE_FUNCTION();
    const std::wstring format = LocalizedText(host_instance, i_id);
    std::wstring text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        const wchar_t digit = format[i] == L'%' && i + 1 < format.size() ? format[i + 1] : L'\0';
        const auto index = static_cast<std::size_t>(digit - L'1');
        if (digit >= L'1' && digit <= L'9' && index < i_arguments.size()) {
            text += i_arguments.begin()[index];
            ++i;
        } else {
            text += format[i];
        }
    }
    return text;
}

HRESULT Ui::ShowMessageBox(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                           std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner) {
    TRACE_FUNCTION();
    HRESULT result = E_UNEXPECTED;
    const HRESULT call_result = CallThreadSafe(
        host_instance, [&] { result = ShowOnMainThread(host_instance, i_text, i_icon, i_buttons, o_answer, i_owner); });
    CHECK_HRESULT(call_result);
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}
