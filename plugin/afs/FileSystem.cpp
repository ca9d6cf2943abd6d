// Identity, properties and connections. The other operations are in FileSystemNames.cpp, FileSystemItems.cpp and
// FileSystemDialogs.cpp.

#include "afs/FileSystem.h"

#include "afs/AccountData.h"
#include "afs/LocalName.h"
#include "afs/Location.h"
#include "afs/Name.h"
#include "afs/Session.h"
#include "core/host/Cancellation.h"
#include "core/host/HostServices.h"
#include "core/trace/Text.h"

using Qorv::ComPtr;
using Qorv::IQorv_CancelFlag;
using Qorv::IQorv_ErrorDetails;

namespace {

constexpr wchar_t file_system_id[] = L"Dropbox";
constexpr wchar_t display_name_id[] = L"db.str.fileSystemName";
constexpr ULONG features = 0x3000A7FF; // The host's bits.
constexpr wchar_t user_name_prop[] = L"UserName";
constexpr wchar_t icon_prop[] = L"Icon";
constexpr wchar_t account_data_prop[] = L"AccountData";
constexpr wchar_t communication_key_prop[] = L"CommunicationKey";

std::wstring UnknownProperty(const wchar_t* i_prop_name) {
    TRACE_FUNCTION();
    return L"unknown property '" + std::wstring(i_prop_name) + L"'";
}

} // namespace

FileSystem::FileSystem(Qorv::IAFS_Inst* i_afs_inst, HostServices* i_plugin)
    : m_afs_inst(i_afs_inst), m_plugin(i_plugin) {
    TRACE_FUNCTION();
}

FileSystem::~FileSystem() {
    TRACE_FUNCTION();
}

void FileSystem::Shutdown() noexcept {
    TRACE_FUNCTION();
    m_plugin.Reset();
    m_afs_inst.Reset();
}

ComPtr<Name> FileSystem::GetName(IUnknown* i_name) noexcept {
    TRACE_FUNCTION();
    return Qorv::OwnObject<Name>(i_name);
}

HRESULT STDMETHODCALLTYPE FileSystem::get_Name(BSTR* o_name) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_name != nullptr, E_POINTER);
    *o_name = Qorv::Bstr(file_system_id).Detach();
    CHECK_RETURN(*o_name != nullptr, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::get_Features(ULONG* o_features) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_features != nullptr, E_POINTER);
    *o_features = features;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::Reserved1() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE FileSystem::Reserved2() noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE FileSystem::get_Prop(Qorv::IAFS_Name* name, Qorv::PCStr i_prop_name,
                                               VARIANT* o_prop_value) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_prop_value != nullptr, E_POINTER);
        CHECK_RETURN(i_prop_name != nullptr, E_INVALIDARG);
        if (EqualsNoCase(i_prop_name, user_name_prop))
            CHECK_HRESULT(GetUserName(name, o_prop_value));
        else if (EqualsNoCase(i_prop_name, icon_prop))
            CHECK_HRESULT(GetIconProp(o_prop_value));
        else if (EqualsNoCase(i_prop_name, account_data_prop))
            CHECK_HRESULT(GetAccountData(name, o_prop_value));
        else {
            TRACE_TEXT(UnknownProperty(i_prop_name));
            return TRACE_RESULT(E_NOTIMPL);
        }
        return TRACE_RESULT(S_OK);
    };
}

HRESULT FileSystem::GetUserName(Qorv::IAFS_Name* name, VARIANT* o_prop_value) {
    TRACE_FUNCTION();
    GET_LOCAL_NAME(name);
    const auto object = local_name->BindObject();
    CHECK_RETURN(object != nullptr, E_INVALIDARG);
    Qorv::Bstr user_name(object->GetWeb()->GetUserInformation()._name);
    CHECK_RETURN(user_name.m_str != nullptr, E_OUTOFMEMORY);
    Qorv::Variant value(std::move(user_name));
    VARIANT& variant_value = value.m_value;
    CHECK_HRESULT(VariantCopy(o_prop_value, &variant_value));
    return TRACE_RESULT(S_OK);
}

/// The account of the name's session, which may be newer than the saved one: the user may have signed in since.
HRESULT FileSystem::GetAccountData(Qorv::IAFS_Name* name, VARIANT* o_prop_value) {
    TRACE_FUNCTION();
    GET_LOCAL_NAME(name);
    CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
    const auto session = local_name->GetSession();
    const SharePoint::UserInformation& user = session->GetWeb()->GetWeb()->GetUserInformation();
    const auto account = Qorv::Create<AccountData>(m_plugin);
    CHECK_RETURN(account != nullptr, E_OUTOFMEMORY);
    account->SetUserId(user._id);
    account->SetToken(session->GetToken());
    account->SetUserName(user._name);
    Qorv::Variant value(Qorv::ComPtr<IUnknown>(account.Get()));
    VARIANT& variant_value = value.m_value;
    CHECK_HRESULT(VariantCopy(o_prop_value, &variant_value));
    return TRACE_RESULT(S_OK);
}

HRESULT FileSystem::GetIconProp(VARIANT* o_prop_value) {
    TRACE_FUNCTION();
    CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
    Qorv::Variant value(m_plugin->GetIcon());
    VARIANT& variant_value = value.m_value;
    CHECK_HRESULT(VariantCopy(o_prop_value, &variant_value));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::put_Prop(Qorv::IAFS_Name* name, Qorv::PCStr i_prop_name,
                                               const VARIANT& i_prop_value) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        GET_LOCAL_NAME(name);
        CHECK_RETURN(i_prop_name != nullptr, E_INVALIDARG);
        if (!EqualsNoCase(i_prop_name, communication_key_prop)) {
            TRACE_TEXT(UnknownProperty(i_prop_name));
            return TRACE_RESULT(E_NOTIMPL);
        }
        CHECK_RETURN(i_prop_value.vt == VT_BSTR, E_INVALIDARG);
        local_name->GetSession()->SetCommunicationKey(std::wstring(
            i_prop_value.bstrVal != nullptr ? i_prop_value.bstrVal : L"", SysStringLen(i_prop_value.bstrVal)));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::Exec(Qorv::IAFS_Name*, Qorv::PCStr, VARIANT*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(E_NOTIMPL);
}

HRESULT STDMETHODCALLTYPE FileSystem::BindToPath(Qorv::PCStr i_path, Qorv::IAFS_BindContext* i_context, ULONG,
                                                 IQorv_ErrorDetails* o_error_details, IQorv_CancelFlag* i_cancel_flag,
                                                 Qorv::IAFS_Name** o_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_error_details) {
        CHECK_RETURN(!IsCanceled(i_cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(o_name != nullptr, E_POINTER);
        *o_name = nullptr;
        CHECK_RETURN(i_path != nullptr, E_INVALIDARG);
        CHECK_THROW(i_context != nullptr, HResultException(L"Cannot bind path with null context", E_INVALIDARG));
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        ComPtr<AccountData> account;
        CHECK_HRESULT(AccountOfContext(i_path, i_context, account));
        *o_name = Name::CreateRoot(account, m_plugin.Get(), i_context).Detach();
        return TRACE_RESULT(S_OK);
    };
}

/// The account that the host binds for, or a new one for the location.
HRESULT FileSystem::AccountOfContext(Qorv::PCStr i_path, Qorv::IAFS_BindContext* i_context,
                                     ComPtr<AccountData>& o_account) {
    TRACE_FUNCTION();
    ComPtr<Qorv::IAFS_AccountData> context_account;
    const HRESULT context_to_account_result =
        i_context->QueryInterface(Qorv::IAFS_AccountData::Id, reinterpret_cast<void**>(&context_account));
    if (SUCCEEDED(context_to_account_result)) {
        o_account = Qorv::OwnObject<AccountData>(context_account);
        CHECK_RETURN(o_account != nullptr, E_INVALIDARG);
        return TRACE_RESULT(S_OK);
    }
    CHECK_RETURN(context_to_account_result == E_NOINTERFACE, context_to_account_result);
    o_account = Qorv::Create<AccountData>(m_plugin.Get(), i_path);
    CHECK_RETURN(o_account != nullptr, E_OUTOFMEMORY);
    o_account->SetUserId(std::wstring(SplitLocation(i_path).user_id));
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::BindToObject(IUnknown* i_object, Qorv::IAFS_BindContext* i_context, ULONG,
                                                   IQorv_ErrorDetails* o_error_details, IQorv_CancelFlag* i_cancel_flag,
                                                   Qorv::IAFS_Name** o_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_error_details) {
        CHECK_RETURN(!IsCanceled(i_cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(o_name != nullptr, E_POINTER);
        *o_name = nullptr;
        CHECK_RETURN(i_object != nullptr, E_INVALIDARG);
        const auto account = Qorv::OwnObject<AccountData>(i_object);
        CHECK_RETURN(account != nullptr, E_INVALIDARG);
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        ComPtr<Qorv::IAFS_BindContext> context = i_context;
        if (context == nullptr)
            CHECK_HRESULT(m_plugin->m_qorv_inst->CreateStdBindContext(&context));
        *o_name = Name::CreateRoot(account, m_plugin.Get(), context).Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::BindFlush(Qorv::IAFS_Name* name, IQorv_ErrorDetails* out_error_details,
                                                IQorv_CancelFlag* cancel_flag) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(out_error_details) {
        CHECK_RETURN(!IsCanceled(cancel_flag), Qorv::ErrorCanceled);
        GET_LOCAL_NAME(name);
        CHECK_THROW(local_name->GetSession()->GetFilesCache() != nullptr, Exception(L"File cache is not found"));
        CHECK_HRESULT(
            local_name->GetSession()->GetFilesCache()->FlushAllCaches(out_error_details, cancel_flag, VARIANT_FALSE));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::BindClose(Qorv::IAFS_Name*, IQorv_ErrorDetails*, IQorv_CancelFlag*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE FileSystem::SetProgressMon(IUnknown*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_FALSE); // Changes are not monitored.
}

HRESULT STDMETHODCALLTYPE FileSystem::GetProgressMon(IUnknown** o_monitor) noexcept {
    TRACE_FUNCTION();
    if (o_monitor != nullptr)
        *o_monitor = nullptr;
    return TRACE_RESULT(S_FALSE);
}

HRESULT STDMETHODCALLTYPE FileSystem::CreateAccount(Qorv::IAUX_CabNode* i_source_cab,
                                                    IQorv_ErrorDetails* o_error_details,
                                                    IQorv_CancelFlag* i_cancel_flag,
                                                    Qorv::IAFS_AccountData** o_account) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(o_error_details) {
        CHECK_RETURN(!IsCanceled(i_cancel_flag), Qorv::ErrorCanceled);
        CHECK_RETURN(o_account != nullptr, E_POINTER);
        *o_account = nullptr;
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        ComPtr<AccountData> account_data;
        if (i_source_cab != nullptr)
            CHECK_HRESULT(AccountData::Create(m_plugin, i_source_cab, account_data));
        else
            account_data = Qorv::Create<AccountData>(m_plugin.Get());
        CHECK_RETURN(account_data != nullptr, E_OUTOFMEMORY);
        ComPtr<Qorv::IAFS_BindContext> bind_context;
        CHECK_HRESULT(m_plugin->m_qorv_inst->CreateStdBindContext(&bind_context));
        ComPtr<Qorv::IAFS_Name> host_name;
        CHECK_HRESULT(BindToObject((Qorv::IAFS_AccountData*)account_data, bind_context, 0, o_error_details,
                                   i_cancel_flag, &host_name));
        *o_account = account_data.Detach();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::get_DispName(BSTR* o_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_name != nullptr, E_POINTER);
        *o_name = nullptr;
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        CHECK_HRESULT(m_plugin->m_qorv_inst->GetLocalStr(display_name_id, o_name));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE FileSystem::get_Icon(IUnknown** o_icon) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_icon != nullptr, E_POINTER);
        *o_icon = nullptr;
        CHECK_RETURN(m_plugin != nullptr, E_UNEXPECTED);
        *o_icon = Qorv::ComPtr(m_plugin->GetIcon()).Detach();
        return TRACE_RESULT(S_OK);
    };
}
