#pragma once

#include "dropbox/SharePoint.h"
#include "qorv/Afs.h"
#include "qorv/CoClass.h"

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

class AccountData;
class HostServices;
class Session;

/// A location in one signed-in account, and the remote object last found there.
///
/// Names share their account's session and keep it alive. Two threads must not bind the same name at once.
class Name final : public Qorv::CoClass<Name, Qorv::IAFS_Name> {
public:
    static constexpr IID ClassId = {0x31d488f1, 0xe0a4, 0x4951, {0xa2, 0x18, 0x70, 0xd5, 0x1c, 0x25, 0x81, 0xde}};
    using BindObjectType = SharePoint::Web::BindObjectType;

    /// Whether a text is a well-formed location: the prefix, a user id (which is not checked), and a path of characters
    /// that are allowed in file names.
    static bool IsStringValid(std::wstring_view text) noexcept;

    /// The name of a text relative to `other`: a whole location of the same account, a path in the account ("/x"), or a
    /// path below `other`. The empty text is `other` itself. Throws E_INVALIDARG as an `HResultException` for anything
    /// else.
    static Qorv::ComPtr<Name> Create(const wchar_t* url, Name* other);

    /// The name of an object of `other`'s account, bound to it.
    static Qorv::ComPtr<Name> Create(const std::shared_ptr<SharePoint::Object>& object, Name* other);

    /// Opens a session for an account and returns the name of its root. The session's token and user are written back
    /// to the account.
    static Qorv::ComPtr<Name> CreateRoot(AccountData* accountData, const Qorv::ComPtr<HostServices>& plugin,
                                         Qorv::IAFS_BindContext* context);

    /// For the functions above.
    Name(std::shared_ptr<Session> i_session, std::wstring i_url);
    ~Name();

    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys** out_file_system) noexcept override;

    /// The remote object; empty if there is none of the wanted kind. An object that was found is kept and returned from
    /// then on without asking the service again. One that was not found is looked up again each time.
    std::shared_ptr<SharePoint::Object> BindObject(BindObjectType kind = BindObjectType::any);

    /// The object that the name is bound to, without asking the service; empty if it is not bound.
    std::shared_ptr<SharePoint::Object> GetObject() const noexcept;

    /// Binds the name to an object and takes over the object's location.
    void SetObject(const std::shared_ptr<SharePoint::Object>& object);

    /// From now on the name follows its object when another name moves it: for a name that a file is open by.
    void FollowMoves();

    /// The item at one location has moved to another. Updates the name if it refers to that item or to something below
    /// it.
    void FollowMove(const std::wstring& i_url, const std::wstring& i_new_url);

    // Somebody else has created a file where the name's new file was to be. It is replaced only if the user saves again
    // after being told.

    void TellOfStrangersFile() noexcept;
    void AcceptReplacing() noexcept;
    bool IsReplacingAccepted() const noexcept;

    /// Null for a root.
    Qorv::ComPtr<Name> GetParent() const;

    /// An unbound name of the same location, for a name whose object is gone: a bound name stays bound.
    Qorv::ComPtr<Name> CreateUnbound() const;

    std::shared_ptr<Session> GetSession() const noexcept;
    std::wstring GetUrl() const;
    /// The location without the prefix and the user id.
    std::wstring GetPath() const;

private:
    std::shared_ptr<Session> m_session;
    mutable std::mutex m_lock; ///< For the two below: another session of the account may move the object meanwhile.
    std::shared_ptr<SharePoint::Object> m_object;
    std::wstring m_url;
    bool m_follows_moves = false;
    bool m_is_stranger_told = false;
    bool m_is_replacing_accepted = false;
};

/// Whether two names belong to the same user's account: only then does a path mean the same object for both.
bool AreOfSameUser(const Name& i_name, const Name& i_other);
