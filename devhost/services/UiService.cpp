#include "services/UiService.h"

#include "services/Bitmap.h"
#include "services/Failure.h"
#include "services/Image.h"
#include "services/StreamReader.h"

namespace DevHost {

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

HRESULT STDMETHODCALLTYPE UiService::CreateObj(const Qorv::UIX_CreateObjParameters*, Qorv::IUIX_Obj**) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE UiService::AddEventLoopMonitor(Qorv::IUIX_EventLoopMonitor*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE UiService::RemoveEventLoopMonitor(Qorv::IUIX_EventLoopMonitor*) noexcept {
    return E_NOTIMPL;
}

HRESULT STDMETHODCALLTYPE UiService::ShowMsgBox(const Qorv::UIX_MsgBoxParameters*, ULONG*) noexcept {
    return E_NOTIMPL;
}

} // namespace DevHost
