#pragma once

#include "dropbox/SharePoint.h"
#include "qorv/Afs.h"

#include <memory>
#include <string>

class FileSystem;
class HostServices;

/// The live connection to one account: its web client and the host's files cache. Names share it, and it ends with the
/// last of them. One call at a time.
class Session {
public:
    /// Opens a session for an account. `io_token` is the account's bare access token; the header's name or "Bearer "
    /// before it is accepted and removed. The token is not checked with the service: see `GetWeb`. Without a token the
    /// user signs in on the host's main thread, and the caller waits. With an empty `io_user_id`, anybody may sign in;
    /// otherwise `i_user_name` tells the user which account to use. Throws the host's code for a cancelled operation if
    /// the user does not sign in, or signs in to another account.
    static std::shared_ptr<Session> Create(std::wstring& io_user_id, std::wstring& io_token,
                                           const Qorv::ComPtr<HostServices>& plugin, Qorv::IAFS_BindContext* context,
                                           const std::wstring& i_user_name = {});

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    Qorv::ComPtr<FileSystem> GetFileSystem() const noexcept;
    /// Null when the host keeps no files cache.
    Qorv::ComPtr<Qorv::IAFS_FilesCache> GetFilesCache() const noexcept;

    /// The web client as the account's root folder. The first call reads the current account, so that a token that the
    /// service refuses makes the first operation fail. It then throws, and asks again next time.
    std::shared_ptr<SharePoint::Object> GetWeb();

    /// The bare access token, in clear.
    const std::wstring& GetToken() const noexcept { return m_token; }

    /// One of the host's texts for the sign-in.
    void SetCommunicationKey(std::wstring i_communication_key);

private:
    Session(Qorv::ComPtr<FileSystem> i_file_system, Qorv::IAFS_BindContext* i_context);

    std::wstring ClientId() const;
    bool TakeSignedIn(const std::wstring& i_token, const std::wstring& i_user_id);

    Qorv::ComPtr<FileSystem> m_file_system;
    Qorv::ComPtr<Qorv::IAFS_BindContext> m_context;
    Qorv::ComPtr<Qorv::IAFS_FilesCache> m_files_cache;
    std::shared_ptr<SharePoint::Object> m_web;
    std::wstring m_token;
    bool m_is_account_read = false;
    std::wstring m_communication_key;
};
