#include "afs/EnumFolder.h"

#include "afs/EnumFolderItem.h"
#include "core/host/Cancellation.h"
#include "core/trace/Check.h"

EnumFolder::EnumFolder(Name* i_name) : m_name(i_name) {
    TRACE_FUNCTION();
    CHECK_THROW(m_name->BindObject(SharePoint::Web::BindObjectType::folder) != nullptr,
                Exception(L"Cannot enumerate non-existing folder"));
    m_children = m_name->GetObject()->AsFolder()->GetChildren();
}

EnumFolder::~EnumFolder() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE EnumFolder::get_Name(Qorv::IAFS_Name** out_name) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_name, E_POINTER);
    *out_name = Qorv::ComPtr(m_name).Detach();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE EnumFolder::Next(Qorv::IAFS_EnumFolderItem** out_enum_item) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(out_enum_item, E_POINTER);
        *out_enum_item = nullptr;
        if (m_cursor == m_children.size())
            return TRACE_RESULT(S_FALSE);
        auto item = Qorv::Create<EnumFolderItem>(Name::Create(m_children[m_cursor], m_name));
        CHECK_RETURN(item != nullptr, E_OUTOFMEMORY);
        ++m_cursor;
        *out_enum_item = item.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE EnumFolder::Reset(Qorv::IQorv_ErrorDetails* o_details,
                                            Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_details) {
        CHECK_RETURN(!IsCanceled(i_cancel_flag), Qorv::ErrorCanceled);
        m_cursor = 0;
        return TRACE_RESULT(S_OK);
    };
}
