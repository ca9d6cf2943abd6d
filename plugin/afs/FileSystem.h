#pragma once

#include "afs/OpenNames.h"
#include "core/host/HostServices.h"
#include "qorv/CoClass.h"

class AccountData;
class Name;

/// The file system "Dropbox": all the host's operations on `dropbox://` locations, each a thin, checked layer over
/// names and remote objects. It keeps no account state; any thread.
class FileSystem final : public Qorv::CoClass<FileSystem, Qorv::IAFS_FileSys> {
public:
    FileSystem(Qorv::IAFS_Inst* i_afs_inst, HostServices* i_plugin);
    ~FileSystem();

    /// Releases the plug-in and the host. Whatever needs them fails from then on; names and files live on.
    void Shutdown() noexcept;

    // FileSystem.cpp: identity, properties, connections
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Features(ULONG* o_features) noexcept override;
    HRESULT STDMETHODCALLTYPE Reserved1() noexcept override;
    HRESULT STDMETHODCALLTYPE Reserved2() noexcept override;
    /// "UserName" of a name's account, and "Icon"; case is ignored.
    HRESULT STDMETHODCALLTYPE get_Prop(Qorv::IAFS_Name* name, Qorv::PCStr i_prop_name,
                                       VARIANT* o_prop_value) noexcept override;
    /// "CommunicationKey" of a name's session, a text; case is ignored.
    HRESULT STDMETHODCALLTYPE put_Prop(Qorv::IAFS_Name* name, Qorv::PCStr i_prop_name,
                                       const VARIANT& i_prop_value) noexcept override;
    HRESULT STDMETHODCALLTYPE Exec(Qorv::IAFS_Name* name, Qorv::PCStr i_command,
                                   VARIANT* io_argument) noexcept override;
    HRESULT STDMETHODCALLTYPE BindToPath(Qorv::PCStr i_path, Qorv::IAFS_BindContext* i_context, ULONG i_flags,
                                         Qorv::IQorv_ErrorDetails* o_error_details,
                                         Qorv::IQorv_CancelFlag* i_cancel_flag,
                                         Qorv::IAFS_Name** o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE BindToObject(IUnknown* i_object, Qorv::IAFS_BindContext* i_context, ULONG i_flags,
                                           Qorv::IQorv_ErrorDetails* o_error_details,
                                           Qorv::IQorv_CancelFlag* i_cancel_flag,
                                           Qorv::IAFS_Name** o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE BindFlush(Qorv::IAFS_Name* name, Qorv::IQorv_ErrorDetails* out_error_details,
                                        Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE BindClose(Qorv::IAFS_Name* name, Qorv::IQorv_ErrorDetails* out_error_details,
                                        Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE SetProgressMon(IUnknown* i_monitor) noexcept override;
    HRESULT STDMETHODCALLTYPE GetProgressMon(IUnknown** o_monitor) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateAccount(Qorv::IAUX_CabNode* i_source_cab, Qorv::IQorv_ErrorDetails* o_error_details,
                                            Qorv::IQorv_CancelFlag* i_cancel_flag,
                                            Qorv::IAFS_AccountData** o_account) noexcept override;
    HRESULT STDMETHODCALLTYPE get_DispName(BSTR* o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Icon(IUnknown** o_icon) noexcept override;

    // FileSystemNames.cpp: names and texts
    HRESULT STDMETHODCALLTYPE StringToName(Qorv::PCStr string, ULONG flags, Qorv::IAFS_Name* parent,
                                           Qorv::IAFS_Name** out_name) noexcept override;
    HRESULT STDMETHODCALLTYPE NameToString(Qorv::IAFS_Name* name, ULONG flags, Qorv::IAFS_Name* parent,
                                           BSTR* out_name) noexcept override;
    HRESULT STDMETHODCALLTYPE NameGetParent(Qorv::IAFS_Name* name, Qorv::IAFS_Name** out_parent) noexcept override;
    HRESULT STDMETHODCALLTYPE NameIsChildOf(Qorv::IAFS_Name* name, Qorv::IAFS_Name* parent,
                                            VARIANT_BOOL* out_is_child) noexcept override;
    HRESULT STDMETHODCALLTYPE NamesAreEqual(Qorv::IAFS_Name* name1, Qorv::IAFS_Name* name2,
                                            VARIANT_BOOL* out_are_equal) noexcept override;

    // FileSystemItems.cpp: files and folders
    HRESULT STDMETHODCALLTYPE EnumFolder(Qorv::IAFS_Name* name, ULONG flags,
                                         Qorv::IQorv_ErrorDetails* out_error_details,
                                         Qorv::IQorv_CancelFlag* cancel_flag,
                                         Qorv::IAFS_EnumFolder** out_enum) noexcept override;
    HRESULT STDMETHODCALLTYPE OpenFile(Qorv::IAFS_Name* name, ULONG flags, Qorv::IQorv_ErrorDetails* out_error_details,
                                       Qorv::IQorv_CancelFlag* cancel_flag,
                                       Qorv::IAFS_File** out_file) noexcept override;
    HRESULT STDMETHODCALLTYPE CreateFolder(Qorv::IAFS_Name* name, Qorv::IQorv_ErrorDetails* out_error_details,
                                           Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Files only. `name` refers to the new location afterwards.
    HRESULT STDMETHODCALLTYPE Move(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                   Qorv::IQorv_ErrorDetails* out_error_details,
                                   Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Files only.
    HRESULT STDMETHODCALLTYPE Copy(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                   Qorv::IQorv_ErrorDetails* out_error_details,
                                   Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    /// Files and folders. `name` refers to the new location afterwards.
    HRESULT STDMETHODCALLTYPE Rename(Qorv::IAFS_Name* name, Qorv::IAFS_Name* new_name,
                                     Qorv::IQorv_ErrorDetails* out_error_details,
                                     Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Delete(Qorv::IAFS_Name* name, Qorv::IQorv_ErrorDetails* out_error_details,
                                     Qorv::IQorv_CancelFlag* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE GetFileInfo(Qorv::IAFS_Name* name, Qorv::IQorv_ErrorDetails* out_error_details,
                                          Qorv::IQorv_CancelFlag* cancel_flag,
                                          Qorv::IAFS_FileInfo** out_info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetVolumeSpace(Qorv::IAFS_Name* name, ULONGLONG* out_total,
                                             ULONGLONG* out_free) noexcept override;

    // FileSystemDialogs.cpp: the plug-in's own dialogs
    HRESULT STDMETHODCALLTYPE CreateDlgParams(ULONG i_dialog_type,
                                              Qorv::IAUX_CabNode** o_dialog_parameters) noexcept override;
    HRESULT STDMETHODCALLTYPE ShowDlg(ULONG i_dialog_type, Qorv::IAUX_CabNode* io_dialog_parameters,
                                      Qorv::IAFS_Name* i_initial_folder, HWND i_parent_window,
                                      Qorv::IAFS_NamesCollection** o_names, LONG* o_user_choise) noexcept override;

    /// The names that files are open by. Several sessions may be of one account.
    OpenNames& GetOpenNames() noexcept { return m_open_names; }

private:
    /// The plug-in's own name object for the host's pointer; null for null and for a name of another file system.
    static Qorv::ComPtr<Name> GetName(IUnknown* i_name) noexcept;

    HRESULT AccountOfContext(Qorv::PCStr i_path, Qorv::IAFS_BindContext* i_context,
                             Qorv::ComPtr<AccountData>& o_account);
    HRESULT GetUserName(Qorv::IAFS_Name* name, VARIANT* o_prop_value);
    HRESULT GetAccountData(Qorv::IAFS_Name* name, VARIANT* o_prop_value);
    HRESULT GetIconProp(VARIANT* o_prop_value);

    OpenNames m_open_names;
    GuardedPtr<Qorv::IAFS_Inst> m_afs_inst;
    GuardedPtr<HostServices> m_plugin; ///< Null after `Shutdown`, which may come while workers use this object.
};
