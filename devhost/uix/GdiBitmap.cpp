#include "uix/GdiBitmap.h"

#include "base/Failure.h"

#include <algorithm>

namespace DevHost {

BitmapHandle MakeGdiBitmap(const Bitmap& i_bitmap) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = static_cast<LONG>(i_bitmap.Width());
    info.bmiHeader.biHeight = -static_cast<LONG>(i_bitmap.Height()); // Rows from the top.
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* pixels = nullptr;
    BitmapHandle bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    if (bitmap == nullptr)
        throw LastErrorFailure(L"Cannot make a bitmap");
    std::ranges::copy(i_bitmap.Pixels(), static_cast<std::uint32_t*>(pixels));
    return bitmap;
}

void DrawBitmap(HDC i_device, const Bitmap& i_bitmap, POINT i_place, BYTE i_opacity) {
    const BitmapHandle bitmap = MakeGdiBitmap(i_bitmap);
    const HDC memory = CreateCompatibleDC(i_device);
    const HGDIOBJ old_bitmap = SelectObject(memory, bitmap.get());
    const auto width = static_cast<int>(i_bitmap.Width());
    const auto height = static_cast<int>(i_bitmap.Height());
    AlphaBlend(i_device, static_cast<int>(i_place.x), static_cast<int>(i_place.y), width, height, memory, 0, 0, width,
               height, {AC_SRC_OVER, 0, i_opacity, AC_SRC_ALPHA});
    SelectObject(memory, old_bitmap);
    DeleteDC(memory);
}

} // namespace DevHost
