#pragma once

#include "host/AccountStore.h"
#include "host/Operation.h"
#include "qorv/Afs.h"

#include <list>
#include <string>

namespace DevHost {

/// A saved account that is bound, that is, signed in to the service.
struct Connection {
    std::wstring id;
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    Qorv::ComPtr<Qorv::IAFS_Name> root;
};

/// A location named by the user, and its account.
struct Place {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    const Connection* connection = nullptr;
};

/// Binds each saved account when it is first needed, and resolves LOCATIONs.
class Connections {
public:
    /// `i_user` is the account that the user chose by its id or name, empty for the first one.
    Connections(Qorv::IAFS_FileSys& i_file_system, const AccountStore& i_accounts, std::wstring i_user,
                CancelFlag* i_cancel_flag);

    /// Resolves a full location, or a path in the chosen account, without asking the service whether it exists. Throws
    /// a `Failure` for text that is neither, and if the account cannot be bound.
    Place Find(const std::wstring& i_text);

    /// The same after a new sign-in to the location's account, which is saved.
    Place FindAfterSignIn(const std::wstring& i_text);

    /// Saves the account of a name, and binds it anew when it is next needed: the plug-in's user may have signed in
    /// since it was bound, or to another account. Earlier places in the account end.
    void SaveAccountOf(Qorv::IAFS_Name* i_name);

    /// A location in an account that is already bound.
    Qorv::ComPtr<Qorv::IAFS_Name> NameIn(const Connection& i_connection, const std::wstring& i_text) const;

private:
    const Connection& AccountFor(const std::wstring& i_text);
    const Connection& FindByLocation(const std::wstring& i_text);
    const Connection& Bind(const SavedAccount& i_account);
    LONG Verify(const Connection& i_connection, const std::wstring& i_text) const;

    Qorv::IAFS_FileSys& m_file_system;
    const AccountStore& m_accounts;
    bool m_signs_in = false; ///< Whatever token is saved.
    std::wstring m_user;
    Qorv::ComPtr<CancelFlag> m_cancel_flag;
    std::list<Connection> m_bound; ///< A list, because places point into it.
};

} // namespace DevHost
