#include "uix/UiService.h"

#include "base/Failure.h"
#include "base/StreamReader.h"
#include "services/Bitmap.h"
#include "services/Image.h"
#include "uix/LayoutDialog.h"
#include "uix/MessageDialog.h"
#include "uix/PopupMenu.h"

namespace DevHost {
namespace {

PCWSTR SystemIcon(ULONG i_icon) {
    switch (i_icon) {
    case Qorv::UIX_MsgBox_IconWarning:
        return IDI_WARNING;
    case Qorv::UIX_MsgBox_IconQuestion:
        return IDI_QUESTION;
    default:
        return nullptr;
    }
}

std::wstring TextOf(Qorv::PCStr i_text) {
    return i_text != nullptr ? i_text : L"";
}

} // namespace

UiService::UiService(const Localization& i_texts, NoticeSink i_notice)
    : m_texts(i_texts), m_notice(std::move(i_notice)), m_monitors(std::make_shared<LoopMonitors>()) {}

/// Whoever starts the program on a hidden display says so in its environment: the program waits for the window's end.
void UiService::TellOfHiddenWindow() {
    if (m_has_told || GetEnvironmentVariableW(L"QORVHOST_HIDDEN_DISPLAY", nullptr, 0) == 0)
        return;
    m_has_told = true;
    m_notice(L"There is no display here, so a window is now open on a hidden one. Ctrl+C ends the program; "
             L"docs/window-scripts.md tells how a script can use the window");
}

HRESULT STDMETHODCALLTYPE UiService::CreateImage(const ULONG* i_ids, ULONG i_count,
                                                 Qorv::IUIX_Image** o_image) noexcept {
    if (o_image == nullptr || (i_ids == nullptr && i_count != 0))
        return E_POINTER;
    *o_image = Qorv::Create<Image>().Detach();
    return *o_image != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT STDMETHODCALLTYPE UiService::CreateBitmapFromStream(IStream* i_stream, Qorv::IUIX_Bitmap** o_bitmap) noexcept {
    if (o_bitmap == nullptr)
        return E_POINTER;
    *o_bitmap = nullptr;
    if (i_stream == nullptr)
        return E_POINTER;
    return Answer([&] {
        *o_bitmap = Bitmap::FromPng(ReadToEnd(i_stream)).Detach();
        return *o_bitmap != nullptr ? S_OK : E_OUTOFMEMORY;
    });
}

HRESULT STDMETHODCALLTYPE UiService::CreateObj(const Qorv::UIX_CreateObjParameters* i_parameters,
                                               Qorv::IUIX_Obj** o_object) noexcept {
    if (o_object != nullptr)
        *o_object = nullptr;
    if (i_parameters == nullptr || i_parameters->sink == nullptr || i_parameters->layout_data == nullptr ||
        i_parameters->layout_id == nullptr)
        return E_INVALIDARG;
    return Answer([&] {
        Layout layout = Layout::Read(i_parameters->layout_data, i_parameters->layout_size, i_parameters->layout_id);
        layout.Localize(m_texts);
        TellOfHiddenWindow();
        const LayoutDialog::Frame frame{i_parameters->owner, i_parameters->window_style};
        const auto dialog = Qorv::Create<LayoutDialog>(layout, frame, m_monitors, m_images);
        if (dialog == nullptr)
            return E_OUTOFMEMORY;
        const HRESULT result = dialog->Attach(i_parameters->sink);
        if (FAILED(result))
            dialog->Destroy();
        else if (o_object != nullptr)
            *o_object = Qorv::ComPtr<LayoutDialog>(dialog).Detach();
        return result;
    });
}

HRESULT STDMETHODCALLTYPE UiService::GetImage(Qorv::PCStr i_name, Qorv::IUIX_Image** o_image) noexcept {
    if (o_image == nullptr)
        return E_POINTER;
    *o_image = nullptr;
    if (i_name == nullptr)
        return E_POINTER;
    return Answer([&] { *o_image = m_images.Get(i_name).Detach(); });
}

HRESULT STDMETHODCALLTYPE UiService::ShowMenu(HWND i_owner, POINT i_place, const Qorv::UIX_Command* i_commands,
                                              ULONG i_count, LONG* o_command_id) noexcept {
    if (o_command_id == nullptr)
        return E_POINTER;
    *o_command_id = 0;
    if (i_commands == nullptr || i_count == 0 || !IsWindow(i_owner))
        return E_INVALIDARG;
    return Answer([&] { *o_command_id = ChooseFromMenu(i_owner, i_place, {i_commands, i_count}); });
}

HRESULT STDMETHODCALLTYPE UiService::AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept {
    if (i_monitor == nullptr)
        return E_POINTER;
    return Answer([&] { m_monitors->Add(i_monitor); });
}

HRESULT STDMETHODCALLTYPE UiService::RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept {
    return m_monitors->Remove(i_monitor) ? S_OK : E_INVALIDARG;
}

HRESULT STDMETHODCALLTYPE UiService::ShowMsgBox(const Qorv::UIX_MsgBoxParameters* i_parameters,
                                                ULONG* o_answer) noexcept {
    if (o_answer == nullptr)
        return E_POINTER;
    *o_answer = 0;
    if (i_parameters == nullptr || i_parameters->buttons == nullptr ||
        i_parameters->default_button >= i_parameters->button_count)
        return E_INVALIDARG;
    return Answer([&] {
        MessageContent content{TextOf(i_parameters->title),
                               TextOf(i_parameters->text),
                               {},
                               SystemIcon(i_parameters->icon),
                               i_parameters->default_button};
        for (ULONG index = 0; index < i_parameters->button_count; ++index)
            content.buttons.push_back(TextOf(i_parameters->buttons[index]));
        TellOfHiddenWindow();
        *o_answer = MessageDialog(i_parameters->owner, content).Ask(*m_monitors);
    });
}

} // namespace DevHost
