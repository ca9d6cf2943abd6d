#pragma once

#include "dropbox/SharePoint.h"

namespace Dropbox {

class Web;

/// A file or a folder of an account, other than its root.
class Object final : public SharePoint::Object, public SharePoint::File, public SharePoint::Folder {
public:
    static std::shared_ptr<Object> Create(SharePoint::ObjectInformation information, std::shared_ptr<Web> web);

    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() override;

    // SharePoint::Object
    std::shared_ptr<SharePoint::File> AsFile() override;
    std::shared_ptr<SharePoint::Folder> AsFolder() override;
    std::shared_ptr<SharePoint::Web> GetWeb() override;
    void Refresh() override;
    void Rename(const std::wstring& new_path) override;
    void Delete() override;
    std::shared_ptr<SharePoint::Object> AtPath(const std::wstring& i_path) override;

    // SharePoint::File
    void CopyTo(const std::wstring& to_path) override;
    void MoveTo(const std::wstring& to_path) override;
    Http::Response OpenRead() override;
    Http::Request OpenWrite(std::uint64_t size) override;
    void FinishWrite(Http::Request& io_request) override;

    // SharePoint::Folder
    std::vector<std::shared_ptr<SharePoint::Object>> GetChildren() override;

private:
    Object(SharePoint::ObjectInformation i_information, std::shared_ptr<Web> i_web);

    void SendRelocation(const wchar_t* i_call, const std::wstring& to_path) const;

    std::shared_ptr<Web> m_web;
    std::weak_ptr<Object> m_self;
};

} // namespace Dropbox
