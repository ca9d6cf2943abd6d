#include "afs/AccountData.h"

#include "afs/Location.h"
#include "core/host/Cab.h"
#include "core/host/CabEncryptor.h"
#include "core/host/HostServices.h"
#include "core/host/ResourceIds.h"
#include "core/trace/Check.h"
#include "core/trace/LogText.h"

using Qorv::Bstr;
using Qorv::Variant;

namespace {

namespace SettingsNames {

constexpr wchar_t template_root[] = L"DropboxAccountDataSettingsV1";
constexpr wchar_t user_id[] = L"UserId";
constexpr wchar_t token[] = L"Token";
constexpr wchar_t user_name[] = L"UserName";
constexpr wchar_t path[] = L"Path";

} // namespace SettingsNames

HRESULT SaveString(const CabDictionary& CabNode, const wchar_t* i_id, const std::wstring& i_text) {
    TRACE_FUNCTION();
    Bstr text(i_text);
    CHECK_RETURN(text.m_str != nullptr, E_OUTOFMEMORY);
    const Variant v(std::move(text));
    CHECK_HRESULT(CabNode[i_id].p->put_v(v));
    return TRACE_RESULT(S_OK);
}

bool HoldsString(Qorv::IAUX_CabNode* i_item) noexcept {
    TRACE_FUNCTION();
    LONG type = Qorv::AUX_CabType_Empty;
    return SUCCEEDED(i_item->get_Type(&type)) && type == Qorv::AUX_CabType_String;
}

} // namespace

HRESULT AccountData::Create(const Qorv::ComPtr<HostServices>& i_plugin, Qorv::IAUX_CabNode* i_cab,
                            Qorv::ComPtr<AccountData>& o_account) {
    TRACE_FUNCTION();
    CHECK_HRESULT(ApplyCabTemplate(i_plugin->m_aux_inst, i_cab, MAKEINTRESOURCE(IDR_ACCOUNT_DATA_CAB_XML),
                                   SettingsNames::template_root));
    auto account = Qorv::Create<AccountData>(i_plugin);
    CHECK_RETURN(account != nullptr, E_OUTOFMEMORY);
    CHECK_HRESULT(account->LoadFrom(i_cab));
    o_account = std::move(account);
    return TRACE_RESULT(S_OK);
}

HRESULT AccountData::LoadFrom(Qorv::IAUX_CabNode* i_cab) {
    TRACE_FUNCTION();
    const CabDictionary CabNode(i_cab);
    m_path = CabNode.StringOrEmpty(SettingsNames::path);
    m_user_id = CabNode.StringOrEmpty(SettingsNames::user_id);
    if (HoldsString(CabNode[SettingsNames::token])) {
        Bstr token;
        CHECK_HRESULT(CabEncryptor::LoadEncryptedString(m_plugin, i_cab, SettingsNames::token, token));
        m_token = token.View();
    }
    m_user_name = CabNode.StringOrEmpty(SettingsNames::user_name);
    return TRACE_RESULT(S_OK);
}

AccountData::AccountData(Qorv::ComPtr<HostServices> i_plugin, std::wstring i_path)
    : m_plugin(std::move(i_plugin)), m_path(std::move(i_path)) {
    TRACE_FUNCTION();
    CHECK_THROW(m_plugin != nullptr, HResultException(E_UNEXPECTED));
}

AccountData::~AccountData() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE AccountData::get_URL(BSTR* o_url) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_url, E_POINTER);
    *o_url = Bstr(m_path).Detach();
    CHECK_RETURN(*o_url, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE AccountData::get_UserName(BSTR* o_user_name) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_user_name, E_POINTER);
    *o_user_name = Bstr(m_user_name).Detach();
    CHECK_RETURN(*o_user_name, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE AccountData::SaveTo(Qorv::IAUX_CabNode* o_cab) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        // Nothing can be encrypted after the plug-in is unloaded.
        CHECK_RETURN(m_plugin->m_aux_inst != nullptr, E_UNEXPECTED);
        CHECK_HRESULT(ApplyCabTemplate(m_plugin->m_aux_inst, o_cab, MAKEINTRESOURCE(IDR_ACCOUNT_DATA_CAB_XML),
                                       SettingsNames::template_root));
        const CabDictionary CabNode(o_cab);
        CHECK_HRESULT(SaveString(CabNode, SettingsNames::user_id, m_user_id));
        CHECK_HRESULT(CabEncryptor::SaveEncryptedString(m_plugin, o_cab, SettingsNames::token, m_token.c_str()));
        CHECK_HRESULT(SaveString(CabNode, SettingsNames::user_name, m_user_name));
        CHECK_HRESULT(SaveString(CabNode, SettingsNames::path, m_path));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE AccountData::VerifyURL(Qorv::PCStr i_url, LONG* o_result) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_result != nullptr, E_POINTER);
        *o_result = Qorv::AFS_VerifyURL_OtherAccount;
        CHECK_RETURN(i_url != nullptr, E_INVALIDARG);
        const std::wstring_view user_id = SplitLocation(i_url).user_id;
        if (user_id.empty())
            *o_result = Qorv::AFS_VerifyURL_NoAccountNamed;
        else if (m_user_id.starts_with(user_id)) // Deliberately a prefix, and case-sensitive.
            *o_result = Qorv::AFS_VerifyURL_ThisAccount;
        TRACE_TEXT(FormatLogText(L"Input URL '%ls' verification result with account user '%ls' and path '%ls' is %d",
                                 i_url, m_user_id.c_str(), m_path.c_str(), static_cast<int>(*o_result)));
        return TRACE_RESULT(S_OK);
    };
}

std::wstring AccountData::GetUserId() const {
    TRACE_FUNCTION();
    return m_user_id;
}

std::wstring AccountData::GetToken() const {
    TRACE_FUNCTION();
    return m_token;
}

std::wstring AccountData::UserName() const {
    TRACE_FUNCTION();
    return m_user_name;
}

// The log says only whether the values are empty.

void AccountData::SetUserId(std::wstring user_id) {
    TRACE_FUNCTION();
    TRACE_TEXT(user_id.empty() ? L"empty user_id" : L"non-empty user_id");
    m_user_id = std::move(user_id);
}

void AccountData::SetToken(std::wstring token) {
    TRACE_FUNCTION();
    TRACE_TEXT(token.empty() ? L"empty token" : L"non-empty token");
    m_token = std::move(token);
}

void AccountData::SetUserName(std::wstring user_name) {
    TRACE_FUNCTION();
    TRACE_TEXT(user_name.empty() ? L"empty user_name" : L"non-empty user_name");
    m_user_name = std::move(user_name);
}
