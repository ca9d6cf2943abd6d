#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

namespace DevHost {

/// The service "UIX", as far as a host on the command line has it: images. Dialogs, their loops and message boxes
/// answer E_NOTIMPL. Main thread only.
class UiService final : public Qorv::CoClass<UiService, Qorv::IUIX_Inst> {
public:
    HRESULT STDMETHODCALLTYPE CreateImage(const ULONG* i_ids, ULONG i_count,
                                          Qorv::IUIX_Image** o_image) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream* i_stream, Qorv::IUIX_Bitmap** o_bitmap) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateObj(const Qorv::UIX_CreateObjParameters* i_parameters,
                                        Qorv::IUIX_Obj** o_object) noexcept override;
    HRESULT STDMETHODCALLTYPE AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor* i_monitor) noexcept override;
    HRESULT STDMETHODCALLTYPE ShowMsgBox(const Qorv::UIX_MsgBoxParameters* i_parameters,
                                         ULONG* o_answer) noexcept override;
};

} // namespace DevHost
