#pragma once

#include "uix/GdiBitmap.h"

namespace DevHost {

/// The arrow in the head of the column by which a list is sorted.
class SortMark {
public:
    /// Throws a `Failure`.
    explicit SortMark(const Scale& i_scale);

    /// Marks one column of a list's head, -1 for none.
    void Show(HWND i_header, int i_column, bool i_is_descending) const;

private:
    BitmapHandle m_ascending;
    BitmapHandle m_descending;
};

} // namespace DevHost
