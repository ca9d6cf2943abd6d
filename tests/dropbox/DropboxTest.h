#pragma once

#include "dropbox/Object.h"
#include "dropbox/Web.h"
#include "support/DevService.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "support/TemporaryFolder.h"

#include <string>

/// A web client of the development service's first account, which starts empty.
class DropboxTest : public Tests::ServiceTest {
protected:
    using Kind = SharePoint::Web::BindObjectType;

    static void MakeFile(const std::wstring& i_path, const std::string& i_content = "content") {
        Tests::WriteBytes(Tests::Service::LocalPath(i_path), i_content);
    }
    static void MakeFolder(const std::wstring& i_path) {
        std::filesystem::create_directory(Tests::Service::LocalPath(i_path));
    }
    static bool Exists(const std::wstring& i_path) {
        return std::filesystem::exists(Tests::Service::LocalPath(i_path));
    }
    static std::string Content(const std::wstring& i_path) {
        return Tests::ReadBytes(Tests::Service::LocalPath(i_path));
    }

    /// The object at a path that exists. Clears the records of earlier requests.
    std::shared_ptr<SharePoint::Object> Bind(const std::wstring& i_path) {
        auto object = m_web->BindObject(i_path, Kind::any);
        Tests::Service::ClearRequests();
        return object;
    }

    static std::string ReadAll(Http::Response io_response) {
        std::string bytes;
        std::string piece(65536, '\0');
        while (const std::uint32_t size = io_response.Read(piece.data(), piece.size()))
            bytes.append(piece, 0, size);
        return bytes;
    }

    std::shared_ptr<Dropbox::Web> m_web = Dropbox::Web::Create(Tests::Service::AuthorizationHeader());
    Tests::LogCapture m_log;
};
