#pragma once

#include "services/Bitmap.h"
#include "uix/Scale.h"

namespace DevHost {

using BitmapHandle = std::unique_ptr<HBITMAP__, DeleteGdiObject>;

/// A picture as the system's own object, for image lists and menus. Throws a `Failure`.
BitmapHandle MakeGdiBitmap(const Bitmap& i_bitmap);

/// Draws a picture, as opaque as it is itself, or fainter: 255 for as it is.
void DrawBitmap(HDC i_device, const Bitmap& i_bitmap, POINT i_place, BYTE i_opacity = 255);

} // namespace DevHost
