#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "services/FilesCache.h"
#include "services/HostImages.h"
#include "services/Localization.h"
#include "uix/LoopMonitors.h"

#include <memory>

namespace DevHost {

/// The service "UIX". Main thread only.
class UiService final : public Qorv::CoClass<UiService, Qorv::IUIX_Inst> {
public:
    /// The texts of the dialogs come from `i_texts`, which outlives the service.
    /// `i_notice` is told when the first window opens where nobody can see it.
    explicit UiService(
        const Localization& i_texts, NoticeSink i_notice = [](const std::wstring&) {});

    HRESULT STDMETHODCALLTYPE CreateImage(const ULONG* i_ids, ULONG i_count,
                                          Qorv::IUIX_Image** o_image) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream* i_stream, Qorv::IUIX_Bitmap** o_bitmap) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateObj(const Qorv::UIX_CreateObjParameters* i_parameters,
                                        Qorv::IUIX_Obj** o_object) noexcept override;
    HRESULT STDMETHODCALLTYPE GetImage(Qorv::PCStr i_name, Qorv::IUIX_Image** o_image) noexcept override;
    HRESULT STDMETHODCALLTYPE AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override;
    /// E_INVALIDARG for an unknown monitor.
    HRESULT STDMETHODCALLTYPE RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override;
    HRESULT STDMETHODCALLTYPE ShowMsgBox(const Qorv::UIX_MsgBoxParameters* i_parameters,
                                         ULONG* o_answer) noexcept override;
    HRESULT STDMETHODCALLTYPE ShowMenu(HWND i_owner, POINT i_place, const Qorv::UIX_Command* i_commands, ULONG i_count,
                                       LONG* o_command_id) noexcept override;

private:
    void TellOfHiddenWindow();

    const Localization& m_texts;
    NoticeSink m_notice;
    bool m_has_told = false;
    HostImages m_images;
    std::shared_ptr<LoopMonitors> m_monitors; ///< Shared with the dialogs, which may outlive the service.
};

} // namespace DevHost
