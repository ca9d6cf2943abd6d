#pragma once

#include "host/AccountStore.h"
#include "host/Operation.h"
#include "qorv/Afs.h"

#include <list>
#include <string>

namespace DevHost {

/// A saved account that is bound: signed in at the service.
struct Connection {
    std::wstring id;
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    Qorv::ComPtr<Qorv::IAFS_Name> root;
};

/// A location that the user named, and the account that it is in.
struct Place {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    const Connection* connection = nullptr;
};

/// Binds saved accounts when they are first needed, each once, and finds what a LOCATION means.
class Connections {
public:
    /// `i_user` is the account that the user chose by its id, empty for the first one.
    Connections(Qorv::IAFS_FileSys& i_file_system, const AccountStore& i_accounts, std::wstring i_user,
                CancelFlag* i_cancel_flag);

    /// A location of the file system, in its account, or a path in the chosen account. The service is not asked whether
    /// it exists. Throws a `Failure` for a text that is neither and when the account cannot be bound.
    Place Find(const std::wstring& i_text);

    /// A location in an account that is bound already.
    Qorv::ComPtr<Qorv::IAFS_Name> NameIn(const Connection& i_connection, const std::wstring& i_text) const;

private:
    const Connection& AccountFor(const std::wstring& i_text);
    const Connection& FindByLocation(const std::wstring& i_text);
    const Connection& Bind(const SavedAccount& i_account);
    LONG Verify(const Connection& i_connection, const std::wstring& i_text) const;

    Qorv::IAFS_FileSys& m_file_system;
    const AccountStore& m_accounts;
    std::wstring m_user;
    Qorv::ComPtr<CancelFlag> m_cancel_flag;
    std::list<Connection> m_bound; ///< A list: places point into it.
};

} // namespace DevHost
