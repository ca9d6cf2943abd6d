#include "dropbox/Web.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "dropbox/ApiCalls.h"
#include "dropbox/Json.h"
#include "dropbox/Metadata.h"
#include "dropbox/Object.h"
#include "dropbox/ServiceConfiguration.h"

namespace Dropbox {

namespace {

using Utility::JsonDocument;
using Utility::Member;

Http::Session OpenSession(const wchar_t* i_host, const std::wstring& authorization_header,
                          const Http::Credentials& server_credentials, const Http::Credentials& proxy_credentials) {
    TRACE_FUNCTION();
    auto session =
        Http::Session::Create(ServiceConfiguration::scheme_prefix, i_host, server_credentials, proxy_credentials);
    session.SetAuthorizationHeader(authorization_header);
    return session;
}

JsonDocument ReadReply(Http::Response response) {
    TRACE_FUNCTION();
    JsonDocument reply;
    Utility::ParseJson(reply, response);
    return reply;
}

/// The service may leave the path out of a record. Then the object is where it was asked for; without a path it would
/// be taken for the root.
SharePoint::ObjectInformation WithPath(SharePoint::ObjectInformation i_information, const std::wstring& i_path) {
    TRACE_FUNCTION();
    if (i_information._path.empty())
        i_information._path = i_path;
    return i_information;
}

SharePoint::ObjectInformation ChildRecord(const Utility::JsonValue& i_entry, const std::wstring& i_folder_path) {
    TRACE_FUNCTION();
    SharePoint::ObjectInformation information = ReadMetadata(i_entry);
    if (information._path.empty())
        information._path = i_folder_path + L'/' + information._name;
    return information;
}

bool IsRoot(const std::wstring& path) {
    TRACE_FUNCTION();
    return path.empty() || path == L"/";
}

} // namespace

Web::Web(Http::Session i_api_session, Http::Session i_content_session)
    : m_api_session(std::move(i_api_session)), m_content_session(std::move(i_content_session)) {
    TRACE_FUNCTION();
    m_information._is_unknown = false; // The root is a folder without name or path.
}

Web::~Web() {
    TRACE_FUNCTION();
}

std::shared_ptr<Web> Web::Create(const std::wstring& authorization_header, const Http::Credentials& server_credentials,
                                 const Http::Credentials& proxy_credentials) {
    TRACE_FUNCTION();
    auto api_session =
        OpenSession(ServiceConfiguration::api_host, authorization_header, server_credentials, proxy_credentials);
    auto content_session =
        OpenSession(ServiceConfiguration::content_host, authorization_header, server_credentials, proxy_credentials);
    const std::shared_ptr<Web> web(new Web(std::move(api_session), std::move(content_session)));
    web->m_self = web;
    return web;
}

std::shared_ptr<SharePoint::File> Web::AsFile() {
    TRACE_FUNCTION();
    return nullptr;
}

std::shared_ptr<SharePoint::Folder> Web::AsFolder() {
    TRACE_FUNCTION();
    return m_self.lock();
}

std::shared_ptr<SharePoint::Web> Web::GetWeb() {
    TRACE_FUNCTION();
    return m_self.lock();
}

void Web::Refresh() {
    TRACE_FUNCTION();
    auto response = m_api_session.SendRequest(L"2/users/get_current_account", accept_json, nullptr, nullptr);
    m_user_information = Utility::ReadFor(L"about the account", [&]() -> SharePoint::UserInformation {
        const JsonDocument account = ReadReply(response);
        return {Utility::Text(Member(account, L"account_id")),
                Utility::Text(Member(Member(account, L"name"), L"display_name"))};
    });
}

void Web::Rename(const std::wstring&) {
    TRACE_FUNCTION();
    CHECK_THROW(false, Exception(L"Root folder cannot be renamed"));
}

void Web::Delete() {
    TRACE_FUNCTION();
    CHECK_THROW(false, Exception(L"Root folder cannot be deleted"));
}

std::shared_ptr<SharePoint::Object> Web::AtPath(const std::wstring&) {
    TRACE_FUNCTION();
    return m_self.lock(); // The root never moves.
}

std::shared_ptr<SharePoint::Object> Web::GetParentFolder(const std::wstring& path) {
    TRACE_FUNCTION();
    if (IsRoot(path))
        return nullptr;
    const std::size_t slash = path.rfind(L'/');
    if (slash == std::wstring::npos || slash == 0)
        return m_self.lock();
    return BindObject(path.substr(0, slash), BindObjectType::folder);
}

std::shared_ptr<SharePoint::Object> Web::BindObject(const std::wstring& path, BindObjectType type) {
    TRACE_FUNCTION();
    if (IsRoot(path))
        return type == BindObjectType::file ? nullptr : m_self.lock();
    auto information = GetMetadata(path);
    if (information._is_unknown)
        return nullptr;
    if (type != BindObjectType::any && information._is_folder != (type == BindObjectType::folder))
        return nullptr;
    return NewObject(std::move(information));
}

std::shared_ptr<SharePoint::Object> Web::CreateFile(const std::wstring& path) {
    TRACE_FUNCTION();
    const std::wstring headers = UploadArgument(path) + L"Content-Type: application/octet-stream\n";
    auto response = m_content_session.SendRequest(L"2/files/upload", accept_json, headers.c_str(), nullptr);
    return NewObject(
        Utility::ReadFor(L"about the new file", [&] { return ReadWritten(ReadReply(response), L"file", path); }));
}

std::shared_ptr<SharePoint::Object> Web::CreateFolder(const std::wstring& path) {
    TRACE_FUNCTION();
    const std::string body = CheckedArguments("{\"path\": \"" + ToUtf8(path) + "\",\"autorename\": false}", {path});
    auto response = m_api_session.SendRequest(L"2/files/create_folder", accept_json, json_content, body.c_str());
    return NewObject(
        Utility::ReadFor(L"about the new folder", [&] { return ReadWritten(ReadReply(response), L"folder", path); }));
}

std::vector<std::shared_ptr<SharePoint::Object>> Web::GetChildren() {
    TRACE_FUNCTION();
    return ListFolder({});
}

SharePoint::ObjectInformation Web::GetMetadata(const std::wstring& path) {
    TRACE_FUNCTION();
    const std::string body = CheckedArguments("{\"path\": \"" + ToUtf8(path) +
                                                  "\",\"include_media_info\": false,\"include_deleted\": false,"
                                                  "\"include_has_explicit_shared_members\": false}",
                                              {path});
    auto response = m_api_session.SendRequest(L"2/files/get_metadata", accept_json, json_content, body.c_str());
    return Utility::ReadFor(L"about the item", [&] { return WithPath(ReadMetadata(ReadReply(response)), path); });
}

std::vector<std::shared_ptr<SharePoint::Object>> Web::ListFolder(const std::wstring& path) {
    TRACE_FUNCTION();
    // A folder's own path already begins with a slash, so its listing sends two: the required wire form.
    const std::string prefix = path.empty() ? "" : "/";
    std::string body =
        CheckedArguments("{\"path\": \"" + prefix + ToUtf8(path) +
                             "\",\"recursive\": false,\"include_media_info\": false,\"include_deleted\": false,"
                             "\"include_has_explicit_shared_members\": false}",
                         {path});
    const wchar_t* call = L"2/files/list_folder";
    std::vector<std::shared_ptr<SharePoint::Object>> children;
    for (;;) {
        auto response = m_api_session.SendRequest(call, accept_json, json_content, body.c_str());
        const std::wstring cursor =
            Utility::ReadFor(L"about the folder", [&] { return ReadPage(ReadReply(response), path, children); });
        if (cursor.empty())
            return children;
        call = L"2/files/list_folder/continue";
        body = "{\"cursor\": \"" + ToUtf8(cursor) + "\"}";
    }
}

/// Appends the children of one page of a listing, and gives the cursor of the next; empty after the last.
std::wstring Web::ReadPage(const Utility::JsonValue& i_page, const std::wstring& i_folder_path,
                           std::vector<std::shared_ptr<SharePoint::Object>>& io_children) const {
    TRACE_FUNCTION();
    for (const auto& entry : Member(i_page, L"entries").GetArray())
        io_children.push_back(NewObject(ChildRecord(entry, i_folder_path)));
    return Member(i_page, L"has_more").GetBool() ? Utility::Text(Member(i_page, L"cursor")) : std::wstring();
}

std::shared_ptr<SharePoint::Object> Web::NewObject(SharePoint::ObjectInformation i_information) const {
    TRACE_FUNCTION();
    return Dropbox::Object::Create(std::move(i_information), m_self.lock());
}

void RevokeToken(const std::wstring& authorization_header) {
    TRACE_FUNCTION();
    auto session = OpenSession(ServiceConfiguration::api_host, authorization_header, {}, {});
    session.SendRequest(L"2/auth/token/revoke", accept_any, nullptr, nullptr);
}

} // namespace Dropbox
