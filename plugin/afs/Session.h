#pragma once

#include "afs/OpenNames.h"
#include "dropbox/SharePoint.h"
#include "qorv/Afs.h"

#include <memory>
#include <string>

class FileSystem;
class HostServices;

/// The live connection of one account: its web client and the host's files cache. Names share it; it ends with the last
/// of them. One call at a time.
class Session {
public:
    /// Opens a session for an account. `io_token` is the account's bare access token; a value that still has the
    /// header's name or "Bearer " before it is accepted and cut. Nothing is sent for it: see `GetWeb`. Without a token
    /// the user signs in, on the host's main thread, for which the caller waits; an empty `io_user_id` takes whoever
    /// signs in, else `i_user_name` tells the user whose account is meant. Throws the host's code for a cancelled
    /// operation when the user does not sign in, or is not the account's.
    static std::shared_ptr<Session> Create(std::wstring& io_user_id, std::wstring& io_token,
                                           const Qorv::ComPtr<HostServices>& plugin, Qorv::IAFS_BindContext* context,
                                           const std::wstring& i_user_name = {});

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    Qorv::ComPtr<FileSystem> GetFileSystem() const noexcept;
    /// Null when the host keeps no files cache.
    Qorv::ComPtr<Qorv::IAFS_FilesCache> GetFilesCache() const noexcept;

    /// The web client as the account's root folder. The first call reads the current account, once, so that a token
    /// which the service refuses fails what is done first: it throws then, and asks again the next time.
    std::shared_ptr<SharePoint::Object> GetWeb();

    /// The names of open files, which go along when what they stand for is moved by another name.
    OpenNames& GetOpenNames() noexcept { return m_open_names; }

    /// A text of the host's for the sign-in.
    void SetCommunicationKey(std::wstring i_communication_key);

private:
    Session(Qorv::ComPtr<FileSystem> i_file_system, Qorv::IAFS_BindContext* i_context);

    std::wstring ClientId() const;
    bool TakeSignedIn(const std::wstring& i_token, const std::wstring& i_user_id);

    Qorv::ComPtr<FileSystem> m_file_system;
    Qorv::ComPtr<Qorv::IAFS_BindContext> m_context;
    Qorv::ComPtr<Qorv::IAFS_FilesCache> m_files_cache;
    std::shared_ptr<SharePoint::Object> m_web;
    bool m_is_account_read = false;
    OpenNames m_open_names;
    std::wstring m_communication_key;
};
