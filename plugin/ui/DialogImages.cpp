#include "ui/DialogImages.h"

#include "core/Trace.h"

namespace Ui {
namespace {

Qorv::ComPtr<Qorv::IUIX_Image> ImageOf(Qorv::IUIX_Inst* i_ui, Qorv::PCStr i_name) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IUIX_Image> image;
    if (i_ui == nullptr || FAILED(i_ui->GetImage(i_name, &image)))
        return nullptr;
    return image;
}

} // namespace

DialogImages::DialogImages(Qorv::IUIX_Inst* i_ui)
    : m_folder(ImageOf(i_ui, L"ico.folder"))
    , m_file(ImageOf(i_ui, L"ico.file"))
    , m_up(ImageOf(i_ui, L"ico.up"))
    , m_new_folder(ImageOf(i_ui, L"ico.folder.new"))
    , m_delete(ImageOf(i_ui, L"ico.delete"))
    , m_refresh(ImageOf(i_ui, L"ico.refresh")) {
    TRACE_FUNCTION();
}

DialogImages::~DialogImages() {
    TRACE_FUNCTION();
}

} // namespace Ui
