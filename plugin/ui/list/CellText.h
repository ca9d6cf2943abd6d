#pragma once

#include "qorv/Host.h"
#include "ui/list/FileRow.h"

#include <string>

namespace Ui {

/// What a person reads in the cells of the file list. Nothing is kept of a row: cells are asked for when they are
/// drawn.
class CellText {
public:
    /// Fetches the localized texts, once for all cells. The time zone, null for the user's, outlives it.
    explicit CellText(Qorv::IQorv_Inst* host_instance, const TIME_ZONE_INFORMATION* i_time_zone = nullptr);

    /// Empty where there is nothing to tell: a folder's size, a date that is not known.
    std::wstring Text(const FileRow& i_row, FileColumn i_column) const;

private:
    std::wstring Kind(const FileRow& i_row) const;

    const TIME_ZONE_INFORMATION* m_time_zone;
    std::wstring m_folder;
    std::wstring m_file;
    std::wstring m_one_byte;
    std::wstring m_extension_file; ///< With "%1" in the place of the extension.
};

} // namespace Ui
