#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"

// Objects of a plug-in from which the host needs next to nothing: everything returns E_NOTIMPL. A test's own class
// overrides what its subject needs.

#define UNUSED_METHOD(...)                                                                                             \
    HRESULT STDMETHODCALLTYPE __VA_ARGS__ noexcept override {                                                          \
        return E_NOTIMPL;                                                                                              \
    }

namespace Tests {

template <typename Self>
class UnusedFile : public Qorv::CoClass<Self, Qorv::IAFS_File> {
public:
    using Details = Qorv::IQorv_ErrorDetails;
    using Cancel = Qorv::IQorv_CancelFlag;
    UNUSED_METHOD(get_Name(Qorv::IAFS_Name**))
    UNUSED_METHOD(get_OpenFlags(ULONG*))
    UNUSED_METHOD(get_IoMode(ULONG*))
    UNUSED_METHOD(Clone(Qorv::IAFS_File**))
    UNUSED_METHOD(IsCloneOf(Qorv::IAFS_File*, VARIANT_BOOL*))
    UNUSED_METHOD(Read(void*, ULONG, ULONG*, Details*, Cancel*))
    UNUSED_METHOD(Write(const void*, ULONG, ULONG*, Details*, Cancel*))
    UNUSED_METHOD(SetPos(LONGLONG, ULONG))
    UNUSED_METHOD(GetPos(ULONGLONG*))
    UNUSED_METHOD(SetSize(ULONGLONG, Details*, Cancel*))
    UNUSED_METHOD(GetSize(ULONGLONG*))
    UNUSED_METHOD(Flush(Details*, Cancel*))
    UNUSED_METHOD(Reopen(ULONG, Details*, Cancel*))
    UNUSED_METHOD(GetStream(IStream**))
    UNUSED_METHOD(get_Prop(Qorv::PCStr, VARIANT*))
    UNUSED_METHOD(put_Prop(Qorv::PCStr, const VARIANT&))
    UNUSED_METHOD(Exec(Qorv::PCStr, VARIANT*))
    UNUSED_METHOD(Close(Details*, Cancel*))
};

template <typename Self>
class UnusedFileSystem : public Qorv::CoClass<Self, Qorv::IAFS_FileSys> {
public:
    using Details = Qorv::IQorv_ErrorDetails;
    using Cancel = Qorv::IQorv_CancelFlag;
    using Name = Qorv::IAFS_Name;
    using Qorv::IAFS_FileSys::EnumFolder;
    UNUSED_METHOD(get_Name(BSTR*))
    UNUSED_METHOD(get_Features(ULONG*))
    UNUSED_METHOD(Reserved1())
    UNUSED_METHOD(Reserved2())
    UNUSED_METHOD(get_Prop(Name*, Qorv::PCStr, VARIANT*))
    UNUSED_METHOD(put_Prop(Name*, Qorv::PCStr, const VARIANT&))
    UNUSED_METHOD(Exec(Name*, Qorv::PCStr, VARIANT*))
    UNUSED_METHOD(BindToPath(Qorv::PCStr, Qorv::IAFS_BindContext*, ULONG, Details*, Cancel*, Name**))
    UNUSED_METHOD(BindToObject(IUnknown*, Qorv::IAFS_BindContext*, ULONG, Details*, Cancel*, Name**))
    UNUSED_METHOD(BindFlush(Name*, Details*, Cancel*))
    UNUSED_METHOD(BindClose(Name*, Details*, Cancel*))
    UNUSED_METHOD(EnumFolder(Name*, ULONG, Details*, Cancel*, Qorv::IAFS_EnumFolder**))
    UNUSED_METHOD(StringToName(Qorv::PCStr, ULONG, Name*, Name**))
    UNUSED_METHOD(NameToString(Name*, ULONG, Name*, BSTR*))
    UNUSED_METHOD(NameGetParent(Name*, Name**))
    UNUSED_METHOD(NameIsChildOf(Name*, Name*, VARIANT_BOOL*))
    UNUSED_METHOD(NamesAreEqual(Name*, Name*, VARIANT_BOOL*))
    UNUSED_METHOD(OpenFile(Name*, ULONG, Details*, Cancel*, Qorv::IAFS_File**))
    UNUSED_METHOD(CreateFolder(Name*, Details*, Cancel*))
    UNUSED_METHOD(Move(Name*, Name*, Details*, Cancel*))
    UNUSED_METHOD(Copy(Name*, Name*, Details*, Cancel*))
    UNUSED_METHOD(Rename(Name*, Name*, Details*, Cancel*))
    UNUSED_METHOD(Delete(Name*, Details*, Cancel*))
    UNUSED_METHOD(GetFileInfo(Name*, Details*, Cancel*, Qorv::IAFS_FileInfo**))
    UNUSED_METHOD(GetVolumeSpace(Name*, ULONGLONG*, ULONGLONG*))
    UNUSED_METHOD(CreateDlgParams(ULONG, Qorv::IAUX_CabNode**))
    UNUSED_METHOD(ShowDlg(ULONG, Qorv::IAUX_CabNode*, Name*, HWND, Qorv::IAFS_NamesCollection**, LONG*))
    UNUSED_METHOD(SetProgressMon(IUnknown*))
    UNUSED_METHOD(GetProgressMon(IUnknown**))
    UNUSED_METHOD(CreateAccount(Qorv::IAUX_CabNode*, Details*, Cancel*, Qorv::IAFS_AccountData**))
    UNUSED_METHOD(get_DispName(BSTR*))
    UNUSED_METHOD(get_Icon(IUnknown**))
};

template <typename Self>
class UnusedPlugin : public Qorv::CoClass<Self, Qorv::IQorv_Plugin> {
public:
    UNUSED_METHOD(get__GUID(GUID*))
    UNUSED_METHOD(get_Name(BSTR*))
    UNUSED_METHOD(get_CopyrightInfo(BSTR*))
    UNUSED_METHOD(get_version(ULONG*))
    UNUSED_METHOD(get_VendorID(ULONG*))
    UNUSED_METHOD(get_Description(BSTR*))
    UNUSED_METHOD(get_LegalInfo(BSTR*))
    UNUSED_METHOD(get_Publisher(BSTR*))
    UNUSED_METHOD(get_Features(ULONG*))
    UNUSED_METHOD(Setup(Qorv::IQorv_Inst*))
    UNUSED_METHOD(RegisterExts())
    UNUSED_METHOD(FinalizeRegistering())
    UNUSED_METHOD(Init())
    UNUSED_METHOD(Unload())
    UNUSED_METHOD(ShowPrefsDlg(HWND))
    UNUSED_METHOD(ImportAdditionalData(IStream*))
    UNUSED_METHOD(ExportAdditionalData(IStream*))
    UNUSED_METHOD(ResetSettings())
};

} // namespace Tests

#undef UNUSED_METHOD
