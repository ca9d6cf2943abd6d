#pragma once

#include "afs/Name.h"

#include <vector>

/// A folder's children, as the service listed them when this was created, and a cursor. Names and items are created one
/// by one, on demand: a listing may be long.
class EnumFolder final : public Qorv::CoClass<EnumFolder, Qorv::IAFS_EnumFolder> {
public:
    /// Lists the folder. Throws if it does not exist.
    explicit EnumFolder(Name* i_name);
    ~EnumFolder();

    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name** out_name) noexcept override;
    HRESULT STDMETHODCALLTYPE Next(Qorv::IAFS_EnumFolderItem** out_enum_item) noexcept override;
    HRESULT STDMETHODCALLTYPE Reset(Qorv::IQorv_ErrorDetails* o_details,
                                    Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept override;

private:
    Qorv::ComPtr<Name> m_name;
    std::vector<std::shared_ptr<SharePoint::Object>> m_children;
    std::size_t m_cursor = 0;
};
