#pragma once

#include "qorv/Uix.h"

namespace Ui {

/// The host's own images that the dialogs show. UI thread.
class DialogImages {
public:
    /// The images are fetched from the service, which may be null.
    explicit DialogImages(Qorv::IUIX_Inst* i_ui);
    DialogImages(const DialogImages&) = delete;
    DialogImages& operator=(const DialogImages&) = delete;
    ~DialogImages();

    // Null where the host has none: what is shown goes without it.
    Qorv::ComPtr<Qorv::IUIX_Image> m_folder;
    Qorv::ComPtr<Qorv::IUIX_Image> m_file;
    Qorv::ComPtr<Qorv::IUIX_Image> m_up;
    Qorv::ComPtr<Qorv::IUIX_Image> m_new_folder;
    Qorv::ComPtr<Qorv::IUIX_Image> m_delete;
    Qorv::ComPtr<Qorv::IUIX_Image> m_refresh;
};

} // namespace Ui
