#pragma once

#include "services/Image.h"
#include "uix/Scale.h"

#include <commctrl.h>

#include <memory>
#include <vector>

namespace DevHost {

/// The images of a list's rows, as the control wants them: in one size, by index. An image is added when first
/// requested.
class ListImages {
public:
    /// Throws a `Failure`.
    explicit ListImages(const Scale& i_scale);

    /// `I_IMAGENONE` for null and for an image without pictures. Throws a `Failure`.
    int IndexOf(Qorv::IUIX_Image* i_image);

    /// The width of each in a row, in pixels, including the gap after it.
    int Width() const noexcept { return static_cast<int>(m_cell.cx); }

    HIMAGELIST Handle() const noexcept { return m_list.get(); }

private:
    struct DestroyList {
        void operator()(HIMAGELIST i_list) const noexcept { ImageList_Destroy(i_list); }
    };
    struct Entry {
        Qorv::ComPtr<Qorv::IUIX_Image> image;
        int index;
    };

    int Add(Qorv::IUIX_Image* i_image);

    ULONG m_side;
    SIZE m_cell; ///< Pixels. Its height is the row height.
    std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, DestroyList> m_list;
    std::vector<Entry> m_entries; ///< A few.
};

} // namespace DevHost
