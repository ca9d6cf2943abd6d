#pragma once

#include "services/Bitmap.h"
#include "uix/Scale.h"

namespace DevHost {

using BitmapHandle = std::unique_ptr<HBITMAP__, DeleteGdiObject>;

/// A picture as a GDI bitmap, for image lists and menus. Throws a `Failure`.
BitmapHandle MakeGdiBitmap(const Bitmap& i_bitmap);

/// Draws a picture; 255 keeps its opacity, less makes it fainter.
void DrawBitmap(HDC i_device, const Bitmap& i_bitmap, POINT i_place, BYTE i_opacity = 255);

} // namespace DevHost
