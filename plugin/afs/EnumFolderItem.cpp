#include "afs/EnumFolderItem.h"

#include "core/trace/Check.h"

EnumFolderItem::EnumFolderItem(Qorv::ComPtr<Name> i_name) : m_name(std::move(i_name)) {
    TRACE_FUNCTION();
}

EnumFolderItem::~EnumFolderItem() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE EnumFolderItem::get_Name(Qorv::IAFS_Name** out_name) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_name, E_POINTER);
    *out_name = Qorv::ComPtr(m_name).Detach();
    return TRACE_RESULT(S_OK);
}
