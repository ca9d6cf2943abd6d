#pragma once

#include "qorv/Uix.h"

namespace Ui {

/// The host's UI service as the dialogs use it, with the images that they show. UI thread.
class DialogUi {
public:
    /// The service may be null: then no dialog can be shown.
    explicit DialogUi(Qorv::IUIX_Inst* i_service);
    DialogUi(const DialogUi&) = delete;
    DialogUi& operator=(const DialogUi&) = delete;
    ~DialogUi();

    /// Fetches the images, once: decoding them is not for the host's start.
    void LoadImages();

    const Qorv::ComPtr<Qorv::IUIX_Inst> m_service;
    // Null before `LoadImages`, and where the host has none; the dialogs then show no image.
    Qorv::ComPtr<Qorv::IUIX_Image> m_folder;
    Qorv::ComPtr<Qorv::IUIX_Image> m_file;
    Qorv::ComPtr<Qorv::IUIX_Image> m_up;
    Qorv::ComPtr<Qorv::IUIX_Image> m_new_folder;
    Qorv::ComPtr<Qorv::IUIX_Image> m_delete;
    Qorv::ComPtr<Qorv::IUIX_Image> m_refresh;
};

} // namespace Ui
