#include "script/WindowPicture.h"

#include "base/Failure.h"
#include "uix/GdiBitmap.h"

#include <wincodec.h>

#include <memory>
#include <utility>

namespace DevHost {
namespace {

using Qorv::ComPtr;

constexpr wchar_t what[] = L"Cannot save the picture of a window";

/// Copies what the screen shows there.
BitmapHandle CopyFromScreen(const RECT& i_place) {
    const auto width = static_cast<int>(i_place.right - i_place.left);
    const auto height = static_cast<int>(i_place.bottom - i_place.top);
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    BitmapHandle bitmap(CreateCompatibleBitmap(screen, width, height));
    const HGDIOBJ old_bitmap = SelectObject(memory, bitmap.get());
    const bool is_copied = BitBlt(memory, 0, 0, width, height, screen, static_cast<int>(i_place.left),
                                  static_cast<int>(i_place.top), SRCCOPY) != FALSE;
    SelectObject(memory, old_bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    if (!is_copied)
        throw LastErrorFailure(what);
    return bitmap;
}

void WritePng(HBITMAP i_bitmap, const std::filesystem::path& i_path) {
    ComPtr<IWICImagingFactory> factory;
    Check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWICImagingFactory),
                           reinterpret_cast<void**>(&factory)),
          what);
    ComPtr<IWICBitmap> source;
    Check(factory->CreateBitmapFromHBITMAP(i_bitmap, nullptr, WICBitmapIgnoreAlpha, &source), what);
    ComPtr<IWICStream> stream;
    Check(factory->CreateStream(&stream), what);
    Check(stream->InitializeFromFilename(i_path.c_str(), GENERIC_WRITE), what);
    ComPtr<IWICBitmapEncoder> encoder;
    Check(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder), what);
    Check(encoder->Initialize(stream, WICBitmapEncoderNoCache), what);
    ComPtr<IWICBitmapFrameEncode> frame;
    Check(encoder->CreateNewFrame(&frame, nullptr), what);
    Check(frame->Initialize(nullptr), what);
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    Check(frame->SetPixelFormat(&format), what);
    Check(frame->WriteSource(source, nullptr), what);
    Check(frame->Commit(), what);
    Check(encoder->Commit(), what);
}

} // namespace

void SaveWindowPicture(HWND i_window, const std::filesystem::path& i_path) {
    RECT place;
    if (!GetWindowRect(i_window, &place) || IsRectEmpty(&place))
        throw Failure(E_INVALIDARG, L"There is no window to take a picture of");
    // Otherwise the picture would lack what is not painted yet, or is held back until the thread waits.
    RedrawWindow(i_window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    constexpr DWORD a_moment_in_ms = 10;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, a_moment_in_ms, 0);
    WritePng(CopyFromScreen(place).get(), i_path);
}

} // namespace DevHost
