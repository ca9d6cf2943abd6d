#include "uix/ListImages.h"

#include "base/Failure.h"
#include "uix/GdiBitmap.h"

#include <algorithm>

namespace DevHost {
namespace {

using Qorv::ComPtr;

// Layout units.
constexpr int side = 16;
constexpr int cell_width = 21; // A gap before the text.
constexpr int row_height = 19; // Space between the rows.

constexpr int first_capacity = 4;
constexpr int growth = 4;

/// A picture at the left of a transparent cell, vertically centred.
ComPtr<Bitmap> Framed(const Bitmap& i_picture, SIZE i_cell) {
    const auto width = static_cast<ULONG>(i_cell.cx);
    const auto height = static_cast<ULONG>(i_cell.cy);
    std::vector<std::uint32_t> pixels(std::size_t{width} * height);
    const std::size_t top = (height - i_picture.Height()) / 2;
    for (ULONG row = 0; row < i_picture.Height(); ++row)
        std::copy_n(i_picture.Pixels().begin() + static_cast<std::ptrdiff_t>(row * i_picture.Width()),
                    i_picture.Width(), pixels.begin() + static_cast<std::ptrdiff_t>((top + row) * width));
    return Qorv::Create<Bitmap>(width, height, std::move(pixels));
}

} // namespace

ListImages::ListImages(const Scale& i_scale)
    : m_side(static_cast<ULONG>(i_scale.Pixels(side)))
    , m_cell{i_scale.Pixels(cell_width), i_scale.Pixels(row_height)}
    , m_list(ImageList_Create(static_cast<int>(m_cell.cx), static_cast<int>(m_cell.cy), ILC_COLOR32, first_capacity,
                              growth)) {
    if (m_list == nullptr)
        throw Failure(E_OUTOFMEMORY, L"Cannot make a list of images");
}

int ListImages::IndexOf(Qorv::IUIX_Image* i_image) {
    if (i_image == nullptr)
        return I_IMAGENONE;
    const auto found = std::ranges::find(m_entries, i_image, [](const Entry& i_entry) { return i_entry.image.Get(); });
    if (found != m_entries.end())
        return found->index;
    m_entries.push_back({i_image, Add(i_image)});
    return m_entries.back().index;
}

int ListImages::Add(Qorv::IUIX_Image* i_image) {
    const ComPtr<Bitmap> picture = SquareOf(i_image, m_side);
    if (picture == nullptr)
        return I_IMAGENONE;
    const int index = ImageList_Add(m_list.get(), MakeGdiBitmap(*Framed(*picture, m_cell)).get(), nullptr);
    return index >= 0 ? index : I_IMAGENONE;
}

} // namespace DevHost
