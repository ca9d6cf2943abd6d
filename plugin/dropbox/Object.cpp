#include "dropbox/Object.h"

#include "core/trace/Check.h"
#include "core/trace/Text.h"
#include "dropbox/ApiCalls.h"
#include "dropbox/Metadata.h"
#include "dropbox/Web.h"

namespace Dropbox {

Object::Object(SharePoint::ObjectInformation i_information, std::shared_ptr<Web> i_web) : m_web(std::move(i_web)) {
    TRACE_FUNCTION();
    m_information = std::move(i_information);
}

Object::~Object() {
    TRACE_FUNCTION();
}

std::shared_ptr<Object> Object::Create(SharePoint::ObjectInformation information, std::shared_ptr<Web> web) {
    TRACE_FUNCTION();
    const std::shared_ptr<Object> object(new Object(std::move(information), std::move(web)));
    object->m_self = object;
    return object;
}

std::shared_ptr<SharePoint::File> Object::AsFile() {
    TRACE_FUNCTION();
    return m_information._is_folder ? nullptr : m_self.lock();
}

std::shared_ptr<SharePoint::Folder> Object::AsFolder() {
    TRACE_FUNCTION();
    return m_information._is_folder ? m_self.lock() : nullptr;
}

std::shared_ptr<SharePoint::Web> Object::GetWeb() {
    TRACE_FUNCTION();
    return m_web->GetWeb();
}

void Object::Refresh() {
    TRACE_FUNCTION();
    auto information = m_web->GetMetadata(m_information._path);
    CHECK_THROW(!information._is_unknown, Exception(L"The service does not say whether this is a file or a folder"));
    m_information = std::move(information);
}

void Object::Rename(const std::wstring& new_path) {
    TRACE_FUNCTION();
    MoveTo(new_path);
}

void Object::Delete() {
    TRACE_FUNCTION();
    const std::string body =
        CheckedArguments("{\"path\": \"" + ToUtf8(m_information._path) + "\"}", {m_information._path});
    m_web->ApiSession().SendRequest(L"2/files/delete", accept_any, json_content_without_line_end, body.c_str());
}

std::shared_ptr<SharePoint::Object> Object::AtPath(const std::wstring& i_path) {
    TRACE_FUNCTION();
    SharePoint::ObjectInformation information = m_information;
    information._path = i_path;
    information._name = i_path.substr(i_path.rfind(L'/') + 1); // Without a slash, from the beginning: npos + 1 is 0.
    return Create(std::move(information), m_web);
}

void Object::CopyTo(const std::wstring& to_path) {
    TRACE_FUNCTION();
    SendRelocation(L"2/files/copy", to_path);
}

void Object::MoveTo(const std::wstring& to_path) {
    TRACE_FUNCTION();
    SendRelocation(L"2/files/move", to_path);
}

void Object::SendRelocation(const wchar_t* i_call, const std::wstring& to_path) const {
    TRACE_FUNCTION();
    const std::string body =
        CheckedArguments("{\"from_path\": \"" + ToUtf8(m_information._path) + "\",\"to_path\": \"" + ToUtf8(to_path) +
                             "\",\"allow_shared_folder\": true,\"autorename\": false,"
                             "\"allow_ownership_transfer\": true}",
                         {m_information._path, to_path});
    m_web->ApiSession().SendRequest(i_call, accept_any, json_content_without_line_end, body.c_str());
}

Http::Response Object::OpenRead() {
    TRACE_FUNCTION();
    const std::wstring headers = DownloadArgument(m_information._path);
    return m_web->ContentSession().SendRequest(L"2/files/download", accept_bytes, headers.c_str(), nullptr);
}

Http::Request Object::OpenWrite(std::uint64_t size) {
    TRACE_FUNCTION();
    // The content type comes first here, but last when an empty file is created: both are the required wire form.
    return m_web->ContentSession().CreateRequest(
        L"Content-Type: application/octet-stream\n" + UploadArgument(m_information._path), size);
}

void Object::FinishWrite(Http::Request& io_request) {
    TRACE_FUNCTION();
    Http::Response response = io_request.Send();
    m_information = Utility::ReadFor(L"about the file that it received", [&] {
        Utility::JsonDocument metadata;
        Utility::ParseJson(metadata, response);
        return ReadWritten(metadata, L"file", m_information._path);
    });
}

std::vector<std::shared_ptr<SharePoint::Object>> Object::GetChildren() {
    TRACE_FUNCTION();
    if (!m_information._is_folder)
        return {};
    return m_web->ListFolder(m_information._path);
}

} // namespace Dropbox
