#include "ui/list/DialogUi.h"

#include "core/trace/Trace.h"

namespace Ui {
namespace {

Qorv::ComPtr<Qorv::IUIX_Image> ImageOf(Qorv::IUIX_Inst* i_service, Qorv::PCStr i_name) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IUIX_Image> image;
    if (i_service == nullptr || FAILED(i_service->GetImage(i_name, &image)))
        return nullptr;
    return image;
}

} // namespace

DialogUi::DialogUi(Qorv::IUIX_Inst* i_service) : m_service(i_service) {
    TRACE_FUNCTION();
}

void DialogUi::LoadImages() {
    TRACE_FUNCTION();
    if (m_folder != nullptr)
        return;
    m_folder = ImageOf(m_service, L"ico.folder");
    m_file = ImageOf(m_service, L"ico.file");
    m_up = ImageOf(m_service, L"ico.up");
    m_new_folder = ImageOf(m_service, L"ico.folder.new");
    m_delete = ImageOf(m_service, L"ico.delete");
    m_refresh = ImageOf(m_service, L"ico.refresh");
}

DialogUi::~DialogUi() {
    TRACE_FUNCTION();
}

} // namespace Ui
