#pragma once

#include "afs/Name.h"

/// One child of an enumerated folder. Its name is already bound, so the service is not asked about it again.
class EnumFolderItem final : public Qorv::CoClass<EnumFolderItem, Qorv::IAFS_EnumFolderItem> {
public:
    explicit EnumFolderItem(Qorv::ComPtr<Name> i_name);
    ~EnumFolderItem();

    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name** out_name) noexcept override;

private:
    Qorv::ComPtr<Name> m_name;
};
