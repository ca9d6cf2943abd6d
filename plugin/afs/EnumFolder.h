#pragma once

#include "afs/Name.h"

#include <vector>

/// A folder's children as the service listed them when this was made, and a cursor into them. Names and items are made
/// one by one when they are asked for: a listing may be long.
class EnumFolder final : public Qorv::CoClass<EnumFolder, Qorv::IAFS_EnumFolder> {
public:
    /// Lists the folder. Throws when there is none.
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
