#pragma once

#include "qorv/Base.h"

// The host's abstract file system service ("AFS"): file systems, and the host's files cache.
//
// Operations that may reach a server take an error-details object and a cancel flag; both may be null. Positions and
// sizes are in bytes, times are file times (100 ns since 1601, UTC).

namespace Qorv {

struct IAUX_CabNode;
struct IQorv_CancelFlag;
struct IQorv_ErrorDetails;
struct IAFS_File;
struct IAFS_FileSys;

/// How `IAFS_FileSys::OpenFile` opens; at most one of the four dispositions.
enum AFS_OpenFileFlags : ULONG {
    AFS_OpenFile_Read = 0x1,
    AFS_OpenFile_Write = 0x2,
    AFS_OpenFile_CreateNew = 0x4,
    AFS_OpenFile_CreateAlways = 0x8,
    AFS_OpenFile_OpenExisting = 0x10,
    AFS_OpenFile_OpenAlways = 0x20,
    AFS_OpenFile_DispositionMask = 0x3C,
};

/// Origins of `IAFS_File::SetPos`.
enum AFS_Origin : ULONG { AFS_Origin_Begin = 0, AFS_Origin_Current = 1, AFS_Origin_End = 2 };

/// Flags of `IAFS_FileSys::StringToName`.
enum AFS_String2NameFlags : ULONG { AFS_String2Name_ValidateOnly = 0x2 };

/// Flag of `IAFS_FileSys::NameToString`: without the account part.
enum AFS_Name2StringFlags : ULONG { AFS_Name2String_PathOnly = 0x2, AFS_Name2String_ForDisplay = 0x8 };

/// Bits of `IAFS_FileInfo::get_Attributes`.
enum AFS_Attributes : ULONG { AFS_Attribute_Folder = 0x100000 };

/// Kinds of dialogs.
enum AFS_DlgType : ULONG { AFS_Dlg_OpenFiles = 0, AFS_Dlg_SaveFile = 1, AFS_Dlg_SelectFolder = 2 };

/// What the user did with a dialog.
enum AFS_UserChoice : LONG { AFS_UserChoice_OK = 1, AFS_UserChoice_Cancel = 2 };

/// Answers of `IAFS_AccountData::VerifyURL`.
enum AFS_VerifyURLResult : LONG {
    AFS_VerifyURL_OtherAccount = 0,
    AFS_VerifyURL_NoAccountNamed = 1,
    AFS_VerifyURL_ThisAccount = 2,
};

/// What a bind is done for. `QueryInterface` gives `IAFS_AccountData` if the host binds for a known account.
struct IAFS_BindContext : IUnknown {
    static constexpr IID Id = {0x2147f77b, 0x4416, 0x47a8, {0xbb, 0x5f, 0x77, 0x6f, 0x71, 0xe5, 0xa0, 0x82}};
};

/// A location in a file system. It knows only its file system, which answers everything else.
struct IAFS_Name : IUnknown {
    static constexpr IID Id = {0x60bf19d9, 0x8e48, 0x4680, {0xa3, 0x6c, 0xde, 0x77, 0xe4, 0xbf, 0xbb, 0xa3}};
    virtual HRESULT STDMETHODCALLTYPE get_FileSys(IAFS_FileSys** out_file_system) = 0;
};

/// A saved account of a file system.
struct IAFS_AccountData : IDispatch {
    static constexpr IID Id = {0x7afdbfb6, 0xadf7, 0x4ee1, {0x89, 0xa7, 0x1b, 0x5d, 0xcd, 0x5e, 0x10, 0xd8}};
    virtual HRESULT STDMETHODCALLTYPE get_URL(BSTR* o_url) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_UserName(BSTR* o_user_name) = 0;
    /// Writes the account into a settings dictionary, secrets encrypted.
    virtual HRESULT STDMETHODCALLTYPE SaveTo(IAUX_CabNode* o_cab) = 0;
    /// Whether a location belongs to this account (`AFS_VerifyURLResult`).
    virtual HRESULT STDMETHODCALLTYPE VerifyURL(PCStr i_url, LONG* o_result) = 0;
};

/// One child of an enumerated folder.
struct IAFS_EnumFolderItem : IUnknown {
    static constexpr IID Id = {0xdeafdaec, 0xdf55, 0x426f, {0xbe, 0x7a, 0xdb, 0x0b, 0x7a, 0xc9, 0x6c, 0x4a}};
    virtual HRESULT STDMETHODCALLTYPE get_Name(IAFS_Name** out_name) = 0;
};

/// A snapshot of a folder's children and a cursor into it.
struct IAFS_EnumFolder : IUnknown {
    static constexpr IID Id = {0xe0b20d57, 0x9bae, 0x487e, {0x8a, 0x91, 0x77, 0xa9, 0x0b, 0x3b, 0x80, 0x05}};
    virtual HRESULT STDMETHODCALLTYPE get_Name(IAFS_Name** out_name) = 0;
    /// One child per call; S_FALSE and null at the end.
    virtual HRESULT STDMETHODCALLTYPE Next(IAFS_EnumFolderItem** out_enum_item) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset(IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag) = 0;
};

/// What is known about a file or folder.
struct IAFS_FileInfo : IUnknown {
    static constexpr IID Id = {0xf558f9e9, 0xd82b, 0x4624, {0x89, 0x11, 0xd6, 0xec, 0x6f, 0xbd, 0x5f, 0xb8}};
    virtual HRESULT STDMETHODCALLTYPE get_Title(BSTR* out_title) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Attributes(ULONG* out_attributes) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Size(ULONGLONG* out_size) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CreationTime(ULONGLONG* out_time) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LastWriteTime(ULONGLONG* out_time) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_LastAccessTime(ULONGLONG* out_time) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Prop(PCStr i_name, VARIANT* out_value) = 0;
};

/// An open file. Reads and writes go to its entry in the host's files cache.
struct IAFS_File : IUnknown {
    static constexpr IID Id = {0xdb039c53, 0x715a, 0x4283, {0x9b, 0x9b, 0x99, 0xaa, 0x42, 0x1b, 0xb9, 0x00}};
    virtual HRESULT STDMETHODCALLTYPE get_Name(IAFS_Name** out_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_OpenFlags(ULONG* out_flags) = 0;
    /// The two access bits of the open flags.
    virtual HRESULT STDMETHODCALLTYPE get_IoMode(ULONG* out_mode) = 0;
    /// Another file on the same entry, at the same position.
    virtual HRESULT STDMETHODCALLTYPE Clone(IAFS_File** out_file) = 0;
    virtual HRESULT STDMETHODCALLTYPE IsCloneOf(IAFS_File* i_file, VARIANT_BOOL* out_is_clone) = 0;
    virtual HRESULT STDMETHODCALLTYPE Read(void* data, ULONG size, ULONG* out_read,
                                           IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Write(const void* data, ULONG size, ULONG* out_written,
                                            IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetPos(LONGLONG offset, ULONG origin) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetPos(ULONGLONG* out_pos) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, IQorv_ErrorDetails* out_error_details,
                                              IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size) = 0;
    /// Writes changes back to the service.
    virtual HRESULT STDMETHODCALLTYPE Flush(IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reopen(ULONG new_open_flags, IQorv_ErrorDetails* out_error_details,
                                             IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetStream(IStream** out_stream) = 0;
    /// "TempFileName": the path of the cache entry's file.
    virtual HRESULT STDMETHODCALLTYPE get_Prop(PCStr i_name, VARIANT* out_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Prop(PCStr i_name, const VARIANT& i_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE Exec(PCStr i_command, VARIANT* io_argument) = 0;
    /// Releases the cache entry. The cache uploads a changed entry when its last file closes, and reports a failure
    /// here.
    virtual HRESULT STDMETHODCALLTYPE Close(IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
};

/// How the files cache reaches one remote file. Transfers are strictly sequential from position 0: `Read` until the end
/// (which is HRESULT_FROM_WIN32(ERROR_HANDLE_EOF)), or `SetSize` with the size of the upload, `BeginWrite`, `Write` up
/// to exactly that size, `EndWrite`. One thread at a time.
struct IAFS_FileCacheCallbacks : IUnknown {
    static constexpr IID Id = {0x7aa19b48, 0x562c, 0x4de0, {0x9e, 0x93, 0x38, 0xc1, 0xfc, 0x72, 0x2c, 0xa5}};
    virtual HRESULT STDMETHODCALLTYPE Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read,
                                           IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                            IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, IQorv_ErrorDetails* out_error_details,
                                              IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size, IQorv_ErrorDetails* out_error_details,
                                              IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE BeginWrite(IQorv_ErrorDetails* out_error_details,
                                                 IQorv_CancelFlag* cancel_flag) = 0;
    /// The upload counts only if this succeeds.
    virtual HRESULT STDMETHODCALLTYPE EndWrite(IQorv_ErrorDetails* out_error_details,
                                               IQorv_CancelFlag* cancel_flag) = 0;
};

/// One file's bytes in the host's files cache.
struct IAFS_FileCache : IUnknown {
    static constexpr IID Id = {0xace74438, 0xd885, 0x4f11, {0x89, 0xb4, 0x3a, 0xeb, 0xe7, 0xe8, 0x49, 0x77}};
    /// Reading at or past the end gives S_OK and 0 bytes.
    virtual HRESULT STDMETHODCALLTYPE Read(ULONGLONG i_pos, void* o_data, ULONG i_size, ULONG* o_read,
                                           IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Write(ULONGLONG i_pos, const void* i_data, ULONG i_size, ULONG* o_written,
                                            IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Size(ULONGLONG* o_size) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG i_size, IQorv_ErrorDetails* o_details,
                                              IQorv_CancelFlag* i_cancel_flag) = 0;
    /// Uploads the entry if it was changed. On failure the bytes are kept, still marked as changed.
    virtual HRESULT STDMETHODCALLTYPE Flush(IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_TempFileName(BSTR* o_path) = 0;
};

/// The host's files cache for one file system. The cache asks a file only for its name and open flags, and it does not
/// keep a reference to it.
///
/// An entry keeps the callback of the file that it was created for. So an entry shared by files of several name objects
/// follows only a move or rename of that first file's name object: changes made after a rename of another one are
/// uploaded to the old location.
struct IAFS_FilesCache : IUnknown {
    static constexpr IID Id = {0x4bd4941c, 0x0c7f, 0x419c, {0xa5, 0xdc, 0xda, 0xb6, 0x4c, 0x5c, 0xc9, 0x8a}};
    /// The entry that open files share for this file's location: S_FALSE and null if there is none. From then on the
    /// file counts as open on it.
    virtual HRESULT STDMETHODCALLTYPE QueryCache(IAFS_File* i_file, ULONG i_flags, IAFS_FileCache** o_cache) = 0;
    /// A new entry of the given size, downloaded by the callback on first need (an entry opened with create-always, or
    /// whose location holds no file, starts changed). `i_flags` are the open flags. The last reserved arguments are 0.
    virtual HRESULT STDMETHODCALLTYPE CreateNewCache(IAFS_File* i_file, IAFS_FileCacheCallbacks* i_callback,
                                                     ULONG i_flags, ULONGLONG i_size, VARIANT_BOOL i_is_temporary,
                                                     ULONG i_reserved1, ULONG i_reserved2,
                                                     IAFS_FileCache** o_cache) = 0;
    /// Uploads every changed entry through its callback; tries all of them, and returns the first failure. `i_close`
    /// also drops the entries that no file has open.
    virtual HRESULT STDMETHODCALLTYPE FlushAllCaches(IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag,
                                                     VARIANT_BOOL i_close) = 0;
    /// Whether an open file may continue with other flags.
    virtual HRESULT STDMETHODCALLTYPE CheckForReopenFile(IAFS_File* i_file, ULONG i_new_flags) = 0;
    /// An open file releases its entry; a changed entry is uploaded with its last file, unless the flag is set. If it
    /// fails or is not uploaded, the entry's bytes are kept for the next flush and the message says where; the file is
    /// closed anyway.
    virtual HRESULT STDMETHODCALLTYPE CloseCache(IAFS_File* i_file, IAFS_FileCache* i_cache,
                                                 IQorv_ErrorDetails* o_details, IQorv_CancelFlag* i_cancel_flag) = 0;
};

/// Enumerates the names of a collection in order.
struct IAFS_EnumNames : IUnknown {
    static constexpr IID Id = {0x017e1334, 0xff85, 0x405b, {0x8a, 0x61, 0x17, 0x82, 0x7b, 0xd9, 0x54, 0xf4}};
    /// S_FALSE if fewer than requested were left; `o_fetched` may be null when `i_count` is 1.
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG i_count, IAFS_Name** o_names, ULONG* o_fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG i_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IAFS_EnumNames** o_enum) = 0;
};

/// A list of locations.
struct IAFS_NamesCollection : IDispatch {
    static constexpr IID Id = {0x00f9b9ea, 0xbbd8, 0x4976, {0x8b, 0x77, 0xf9, 0x1f, 0x92, 0x81, 0xc0, 0xae}};
    virtual HRESULT STDMETHODCALLTYPE get_Count(ULONG* o_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Item(ULONG i_index, IAFS_Name** o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE Add(IAFS_Name* i_name) = 0;
    /// Removes the first entry that is this object; E_INVALIDARG if there is none.
    virtual HRESULT STDMETHODCALLTYPE Remove(IAFS_Name* i_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Enum(IAFS_EnumNames** o_enum) = 0;
};

/// A file system. It belongs to a plug-in, which registers it with `IAFS_Inst`.
struct IAFS_FileSys : IDispatch {
    static constexpr IID Id = {0x480d5ebf, 0x1578, 0x4050, {0x8c, 0xe2, 0x5e, 0x67, 0xf5, 0x7f, 0xbe, 0xa9}};
    /// The id of the file system.
    virtual HRESULT STDMETHODCALLTYPE get_Name(BSTR* o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Features(ULONG* o_features) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved1() = 0;
    virtual HRESULT STDMETHODCALLTYPE Reserved2() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Prop(IAFS_Name* i_name, PCStr i_prop_name, VARIANT* o_prop_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Prop(IAFS_Name* i_name, PCStr i_prop_name, const VARIANT& i_prop_value) = 0;
    virtual HRESULT STDMETHODCALLTYPE Exec(IAFS_Name* i_name, PCStr i_command, VARIANT* io_argument) = 0;
    /// Both binds open a connection and return the root of the account's locations.
    virtual HRESULT STDMETHODCALLTYPE BindToPath(PCStr i_path, IAFS_BindContext* i_context, ULONG i_flags,
                                                 IQorv_ErrorDetails* o_error_details, IQorv_CancelFlag* i_cancel_flag,
                                                 IAFS_Name** o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindToObject(IUnknown* i_object, IAFS_BindContext* i_context, ULONG i_flags,
                                                   IQorv_ErrorDetails* o_error_details, IQorv_CancelFlag* i_cancel_flag,
                                                   IAFS_Name** o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindFlush(IAFS_Name* i_name, IQorv_ErrorDetails* out_error_details,
                                                IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindClose(IAFS_Name* i_name, IQorv_ErrorDetails* out_error_details,
                                                IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumFolder(IAFS_Name* name, ULONG flags, IQorv_ErrorDetails* out_error_details,
                                                 IQorv_CancelFlag* cancel_flag, IAFS_EnumFolder** out_enum) = 0;
    virtual HRESULT STDMETHODCALLTYPE StringToName(PCStr string, ULONG flags, IAFS_Name* parent,
                                                   IAFS_Name** out_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE NameToString(IAFS_Name* name, ULONG flags, IAFS_Name* parent, BSTR* out_name) = 0;
    /// S_OK and null for a root.
    virtual HRESULT STDMETHODCALLTYPE NameGetParent(IAFS_Name* name, IAFS_Name** out_parent) = 0;
    virtual HRESULT STDMETHODCALLTYPE NameIsChildOf(IAFS_Name* name, IAFS_Name* parent, VARIANT_BOOL* out_is_child) = 0;
    virtual HRESULT STDMETHODCALLTYPE NamesAreEqual(IAFS_Name* name1, IAFS_Name* name2,
                                                    VARIANT_BOOL* out_are_equal) = 0;
    /// `flags` are `AFS_OpenFileFlags`.
    virtual HRESULT STDMETHODCALLTYPE OpenFile(IAFS_Name* name, ULONG flags, IQorv_ErrorDetails* out_error_details,
                                               IQorv_CancelFlag* cancel_flag, IAFS_File** out_file) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateFolder(IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                                   IQorv_CancelFlag* cancel_flag) = 0;
    /// After a move or a rename, `name` refers to the new location.
    virtual HRESULT STDMETHODCALLTYPE Move(IAFS_Name* name, IAFS_Name* new_name, IQorv_ErrorDetails* out_error_details,
                                           IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Copy(IAFS_Name* name, IAFS_Name* new_name, IQorv_ErrorDetails* out_error_details,
                                           IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Rename(IAFS_Name* name, IAFS_Name* new_name,
                                             IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE Delete(IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                             IQorv_CancelFlag* cancel_flag) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFileInfo(IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                                  IQorv_CancelFlag* cancel_flag, IAFS_FileInfo** out_info) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVolumeSpace(IAFS_Name* name, ULONGLONG* out_total, ULONGLONG* out_free) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateDlgParams(ULONG i_dialog_type, IAUX_CabNode** o_dialog_parameters) = 0;
    /// If `i_initial_folder` is null, the dialog starts in the parameters' "InitialPathName".
    virtual HRESULT STDMETHODCALLTYPE ShowDlg(ULONG i_dialog_type, IAUX_CabNode* io_dialog_parameters,
                                              IAFS_Name* i_initial_folder, HWND i_parent_window,
                                              IAFS_NamesCollection** o_names, LONG* o_user_choise) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetProgressMon(IUnknown* i_monitor) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetProgressMon(IUnknown** o_monitor) = 0;
    /// A bound account, from a saved dictionary or (null) new.
    virtual HRESULT STDMETHODCALLTYPE CreateAccount(IAUX_CabNode* i_source_cab, IQorv_ErrorDetails* o_error_details,
                                                    IQorv_CancelFlag* i_cancel_flag, IAFS_AccountData** o_account) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_DispName(BSTR* o_name) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Icon(IUnknown** o_icon) = 0;

    /// Enumeration without flags. Not virtual: it has no slot.
    HRESULT EnumFolder(IAFS_Name* name, IQorv_ErrorDetails* out_error_details, IQorv_CancelFlag* cancel_flag,
                       IAFS_EnumFolder** out_enum) {
        return EnumFolder(name, 0, out_error_details, cancel_flag, out_enum);
    }
};

/// The service itself. Main thread, except for looking up a cache.
struct IAFS_Inst : IUnknown {
    static constexpr IID Id = {0x296130af, 0xb7de, 0x43ea, {0xa1, 0xa9, 0x3a, 0x12, 0xcb, 0x85, 0xc2, 0xcb}};
    virtual HRESULT STDMETHODCALLTYPE RegisterFileSys(IAFS_FileSys* i_file_system) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnregisterFileSys(IAFS_FileSys* i_file_system) = 0;
    /// The files cache of a registered file system; always the same one. S_OK and null if the host has none. Any
    /// thread.
    virtual HRESULT STDMETHODCALLTYPE GetFilesCache(IAFS_FileSys* i_file_system, IAFS_FilesCache** o_cache) = 0;
    /// The host's default parameters of a dialog (`AFS_DlgType`), a dictionary without a template.
    virtual HRESULT STDMETHODCALLTYPE CreateDlgDefaultParams(ULONG i_dialog_type,
                                                             IAUX_CabNode** o_dialog_parameters) = 0;
};

} // namespace Qorv
