#include "afs/Name.h"

#include "afs/AccountData.h"
#include "afs/FileSystem.h"
#include "afs/Location.h"
#include "afs/ObjectLookup.h"
#include "afs/Session.h"
#include "core/trace/Check.h"
#include "core/trace/Text.h"

#include <algorithm>

using Qorv::ComPtr;

namespace {

constexpr std::wstring_view forbidden_in_paths = L"\"*:<>?\\|"; // And control characters.

ComPtr<Name> NewName(std::shared_ptr<Session> i_session, std::wstring i_url) {
    TRACE_FUNCTION();
    auto name = Qorv::Create<Name>(std::move(i_session), std::move(i_url));
    CHECK_THROW(name != nullptr, HResultException(E_OUTOFMEMORY));
    return name;
}

/// The location of a path that is absolute in the account of `other_object`, or relative to it.
std::wstring ResolvePath(const wchar_t* i_path, SharePoint::Object& other_object) {
    TRACE_FUNCTION();
    std::wstring url(location_prefix);
    url += other_object.GetWeb()->GetUserInformation()._id;
    if (*i_path != L'/')
        url += other_object.GetInformation()._path + L'/';
    url += i_path;
    return url;
}

} // namespace

bool Name::IsStringValid(std::wstring_view text) noexcept {
    TRACE_FUNCTION();
    if (!text.starts_with(location_prefix))
        return false;
    const std::wstring_view path = SplitLocation(text).path;
    return !path.empty() && std::ranges::none_of(path, [](wchar_t i_character) {
        return i_character < L' ' || forbidden_in_paths.find(i_character) != std::wstring_view::npos;
    });
}

ComPtr<Name> Name::Create(const wchar_t* url, Name* other) {
    TRACE_FUNCTION();
    CHECK_THROW(url != nullptr, HResultException(E_INVALIDARG));
    CHECK_THROW(other != nullptr, HResultException(E_INVALIDARG));
    const auto other_object = other->BindObject();
    CHECK_THROW(other_object != nullptr, HResultException(E_INVALIDARG));
    if (*url == L'\0')
        return other;
    const LocationParts parts = SplitLocation(url);
    const wchar_t* const user_id = parts.user_id.data();
    const wchar_t* const path = parts.path.data();
    CHECK_THROW(user_id == path || StringCompare(other_object->GetWeb()->GetUserInformation()._id, user_id,
                                                 static_cast<int>(path - user_id)) == 0,
                HResultException(E_INVALIDARG));
    std::wstring resolved = user_id == path ? ResolvePath(path, *other_object) : url;
    if (resolved.ends_with(L'/'))
        resolved.pop_back();
    return NewName(other->m_session, std::move(resolved));
}

ComPtr<Name> Name::Create(const std::shared_ptr<SharePoint::Object>& object, Name* other) {
    TRACE_FUNCTION();
    CHECK_THROW(object != nullptr, HResultException(E_INVALIDARG));
    const auto other_object = other->BindObject();
    CHECK_THROW(other_object != nullptr, HResultException(E_INVALIDARG));
    CHECK_THROW(object->GetWeb() == other_object->GetWeb(), HResultException(E_INVALIDARG));
    auto name = NewName(other->m_session, {});
    name->SetObject(object);
    return name;
}

ComPtr<Name> Name::CreateRoot(AccountData* accountData, const Qorv::ComPtr<HostServices>& plugin,
                              Qorv::IAFS_BindContext* context) {
    TRACE_FUNCTION();
    std::wstring user_id = accountData->GetUserId();
    std::wstring token = accountData->GetToken();
    auto name = NewName(Session::Create(user_id, token, plugin, context, accountData->UserName()), {});
    const auto root = name->m_session->GetWeb();
    name->SetObject(root);
    const SharePoint::UserInformation& user = root->GetWeb()->GetUserInformation();
    accountData->SetUserId(user._id);
    accountData->SetToken(token);
    accountData->SetUserName(user._name);
    return name;
}

Name::Name(std::shared_ptr<Session> i_session, std::wstring i_url)
    : m_session(std::move(i_session)), m_url(std::move(i_url)) {
    TRACE_FUNCTION();
}

Name::~Name() {
    TRACE_FUNCTION();
    if (m_follows_moves)
        m_session->GetFileSystem()->GetOpenNames().Remove(this);
}

HRESULT STDMETHODCALLTYPE Name::get_FileSys(Qorv::IAFS_FileSys** out_file_system) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(out_file_system != nullptr, E_POINTER);
    *out_file_system = m_session->GetFileSystem().Detach();
    return TRACE_RESULT(S_OK);
}

std::shared_ptr<SharePoint::Object> Name::BindObject(BindObjectType kind) {
    TRACE_FUNCTION();
    if (const auto object = GetObject())
        return IsOfType(*object, kind) ? object : nullptr;
    const std::wstring url = GetUrl();
    const LocationParts parts = SplitLocation(url);
    const auto web = m_session->GetWeb()->GetWeb();
    if (!EqualsNoCase(parts.user_id, web->GetUserInformation()._id))
        return {};
    const auto object = FindObject(*web, std::wstring(parts.path), kind);
    if (object != nullptr)
        SetObject(object);
    return object;
}

std::shared_ptr<SharePoint::Object> Name::GetObject() const noexcept {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    return m_object;
}

void Name::SetObject(const std::shared_ptr<SharePoint::Object>& object) {
    TRACE_FUNCTION();
    CHECK_THROW(object, HResultException(E_INVALIDARG));
    std::wstring url = LocationOf(*object);
    const std::lock_guard guard(m_lock);
    m_url = std::move(url);
    m_object = object;
}

void Name::FollowMoves() {
    TRACE_FUNCTION();
    m_session->GetFileSystem()->GetOpenNames().Add(this);
    m_follows_moves = true;
}

void Name::FollowMove(const std::wstring& i_url, const std::wstring& i_new_url) {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    const wchar_t* const rest = RestBehindParent(m_url, i_url);
    if (rest == nullptr || (*rest != L'\0' && *rest != L'/'))
        return;
    std::wstring url = i_new_url + rest;
    if (m_object != nullptr)
        m_object = m_object->AtPath(std::wstring(SplitLocation(url).path));
    m_url = std::move(url);
}

void Name::TellOfStrangersFile() noexcept {
    TRACE_FUNCTION();
    m_is_stranger_told = true;
}

void Name::AcceptReplacing() noexcept {
    TRACE_FUNCTION();
    m_is_replacing_accepted = m_is_stranger_told;
}

bool Name::IsReplacingAccepted() const noexcept {
    TRACE_FUNCTION();
    return m_is_replacing_accepted;
}

ComPtr<Name> Name::GetParent() const {
    TRACE_FUNCTION();
    const std::wstring url = GetUrl();
    const std::wstring_view path = SplitLocation(url).path;
    const std::size_t path_start = url.size() - path.size();
    const std::size_t last_slash = url.rfind(L'/');
    if (path.empty() || path == L"/" || last_slash == std::wstring::npos || last_slash < path_start)
        return nullptr;
    return NewName(m_session, url.substr(0, last_slash));
}

ComPtr<Name> Name::CreateUnbound() const {
    TRACE_FUNCTION();
    return NewName(m_session, GetUrl());
}

std::shared_ptr<Session> Name::GetSession() const noexcept {
    TRACE_FUNCTION();
    return m_session;
}

std::wstring Name::GetUrl() const {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    return m_url;
}

std::wstring Name::GetPath() const {
    TRACE_FUNCTION();
    return std::wstring(SplitLocation(GetUrl()).path);
}

bool AreOfSameUser(const Name& i_name, const Name& i_other) {
    TRACE_FUNCTION();
    return i_name.GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id ==
           i_other.GetSession()->GetWeb()->GetWeb()->GetUserInformation()._id;
}
