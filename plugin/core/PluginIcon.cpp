#include "core/PluginIcon.h"

#include "core/host/Resource.h"
#include "core/trace/Trace.h"

#include <iterator>

using Qorv::ComPtr;

namespace {

constexpr ULONG icon_ids[] = {IDR_ICON_16_PNG, IDR_ICON_24_PNG, IDR_ICON_32_PNG, IDR_ICON_48_PNG};

void AddBitmap(Qorv::IUIX_Inst* i_uix_inst, Qorv::IUIX_Image* io_image, ULONG i_id) {
    TRACE_FUNCTION();
    const ComPtr<IStream> png = Resource(MAKEINTRESOURCEW(i_id), L"PNG").OpenStream();
    ComPtr<Qorv::IUIX_Bitmap> bitmap;
    if (png != nullptr && SUCCEEDED(i_uix_inst->CreateBitmapFromStream(png, &bitmap)) && bitmap != nullptr)
        io_image->AddBitmap(bitmap);
}

} // namespace

ComPtr<Qorv::IUIX_Image> LoadPluginIcon(Qorv::IUIX_Inst* i_uix_inst) {
    TRACE_FUNCTION();
    ComPtr<Qorv::IUIX_Image> image;
    if (FAILED(i_uix_inst->CreateImage(icon_ids, ULONG{std::size(icon_ids)}, &image)) || image == nullptr)
        return nullptr;
    for (const ULONG id : icon_ids)
        AddBitmap(i_uix_inst, image, id);
    ULONG count = 0;
    return SUCCEEDED(image->get_Count(&count)) && count != 0 ? image : nullptr;
}
