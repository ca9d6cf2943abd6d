#include "core/host/MessageBox.h"

#include "core/host/LocalizedText.h"
#include "core/host/ModalOwner.h"
#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"
#include "qorv/Values.h"

#include <vector>

using Qorv::IUIX_Inst;

namespace {

constexpr wchar_t title_id[] = L"db.str.fileSystemName";

HRESULT ShowOnMainThread(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                         std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner,
                         ULONG i_default_button) {
    TRACE_FUNCTION();
    std::vector<std::wstring> captions;
    captions.reserve(i_buttons.size());
    for (const Qorv::PCStr id : i_buttons)
        captions.push_back(Ui::LocalizedText(host_instance, id));
    std::vector<Qorv::PCStr> buttons;
    buttons.reserve(captions.size());
    for (const std::wstring& caption : captions)
        buttons.push_back(caption.c_str());
    const std::wstring title = Ui::LocalizedText(host_instance, title_id);

    Qorv::ComPtr<IUIX_Inst> uix_instance;
    CHECK_HRESULT(host_instance->GetExtension(L"UIX", (IUnknown**)&uix_instance));
    const Qorv::UIX_MsgBoxParameters parameters{
        .owner = i_owner != nullptr ? i_owner : Ui::ModalOwner(host_instance),
        .title = title.c_str(),
        .text = i_text.c_str(),
        .icon = i_icon,
        .buttons = buttons.data(),
        .button_count = static_cast<ULONG>(buttons.size()),
        .default_button = i_default_button,
    };
    CHECK_HRESULT(uix_instance->ShowMsgBox(&parameters, &o_answer));
    return TRACE_RESULT(S_OK);
}

} // namespace

HRESULT Ui::ShowMessageBox(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                           std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner,
                           ULONG i_default_button) {
    TRACE_FUNCTION();
    HRESULT result = E_UNEXPECTED;
    const HRESULT call_result = CallThreadSafe(host_instance, [&] {
        result = ShowOnMainThread(host_instance, i_text, i_icon, i_buttons, o_answer, i_owner, i_default_button);
    });
    CHECK_HRESULT(call_result);
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}
