#pragma once

#include "dropbox/Json.h"
#include "dropbox/SharePoint.h"
#include "http/HttpSession.h"

namespace Dropbox {

/// The client of one signed-in account, which is also the account's root folder.
class Web final : public SharePoint::Object, public SharePoint::Web, public SharePoint::Folder {
public:
    /// Sends nothing: the user information is empty until the first `Refresh`. `authorization_header` is a whole header
    /// line with its line end.
    static std::shared_ptr<Web> Create(const std::wstring& authorization_header,
                                       const Http::Credentials& server_credentials = {},
                                       const Http::Credentials& proxy_credentials = {});

    Web(const Web&) = delete;
    Web& operator=(const Web&) = delete;
    ~Web() override;

    // SharePoint::Object
    std::shared_ptr<SharePoint::File> AsFile() override;
    std::shared_ptr<SharePoint::Folder> AsFolder() override;
    std::shared_ptr<SharePoint::Web> GetWeb() override;
    /// Reads the current account.
    void Refresh() override;
    void Rename(const std::wstring& new_path) override;
    void Delete() override;
    std::shared_ptr<SharePoint::Object> AtPath(const std::wstring& i_path) override;

    // SharePoint::Web
    std::shared_ptr<SharePoint::Object> GetParentFolder(const std::wstring& path) override;
    std::shared_ptr<SharePoint::Object> BindObject(const std::wstring& path, BindObjectType type) override;
    std::shared_ptr<SharePoint::Object> CreateFile(const std::wstring& path) override;
    std::shared_ptr<SharePoint::Object> CreateFolder(const std::wstring& path) override;

    // SharePoint::Folder
    std::vector<std::shared_ptr<SharePoint::Object>> GetChildren() override;

    // For the account's objects.
    Http::Session& ApiSession() noexcept { return m_api_session; }
    Http::Session& ContentSession() noexcept { return m_content_session; }
    /// What the service knows about the object at a path.
    SharePoint::ObjectInformation GetMetadata(const std::wstring& path);
    /// All children of the folder at a path; the root's is empty.
    std::vector<std::shared_ptr<SharePoint::Object>> ListFolder(const std::wstring& path);

private:
    Web(Http::Session i_api_session, Http::Session i_content_session);

    std::shared_ptr<SharePoint::Object> NewObject(SharePoint::ObjectInformation i_information) const;
    std::wstring ReadPage(const Utility::JsonValue& i_page, const std::wstring& i_folder_path,
                          std::vector<std::shared_ptr<SharePoint::Object>>& io_children) const;

    Http::Session m_api_session;
    Http::Session m_content_session; ///< Downloads and uploads only.
    std::weak_ptr<Web> m_self;
};

/// Revokes the token of an authorization header.
void RevokeToken(const std::wstring& authorization_header);

} // namespace Dropbox
