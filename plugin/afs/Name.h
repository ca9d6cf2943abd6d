#pragma once

#include "dropbox/SharePoint.h"
#include "qorv/Afs.h"
#include "qorv/CoClass.h"

#include <memory>
#include <string>
#include <string_view>

class AccountData;
class HostServices;
class Session;

/// A location in one signed-in account, and the remote object that was last found there.
///
/// Names share the session of their account and keep it alive. No lock: a name is not bound on two threads at once.
class Name final : public Qorv::CoClass<Name, Qorv::IAFS_Name> {
public:
    static constexpr IID ClassId = {0x31d488f1, 0xe0a4, 0x4951, {0xa2, 0x18, 0x70, 0xd5, 0x1c, 0x25, 0x81, 0xde}};
    using BindObjectType = SharePoint::Web::BindObjectType;

    /// Whether a text is a well-formed location: the prefix, a user id (which is not looked at), a path of characters
    /// that file names may have.
    static bool IsStringValid(std::wstring_view text) noexcept;

    /// The name of a text seen from `other`: a whole location of the same account, a path in it ("/x"), or a path below
    /// `other`'s. The empty text is `other` itself. Throws E_INVALIDARG as an `HResultException` for anything else.
    static Qorv::ComPtr<Name> Create(const wchar_t* url, Name* other);

    /// The name of an object of `other`'s account, bound to it.
    static Qorv::ComPtr<Name> Create(const std::shared_ptr<SharePoint::Object>& object, Name* other);

    /// Opens a session for an account and gives the name of its root. What the session ended with is written back into
    /// the account.
    static Qorv::ComPtr<Name> CreateRoot(AccountData* accountData, const Qorv::ComPtr<HostServices>& plugin,
                                         Qorv::IAFS_BindContext* context);

    /// For the functions above.
    Name(std::shared_ptr<Session> i_session, std::wstring i_url);
    ~Name();

    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys** out_file_system) noexcept override;

    /// The remote object, empty when there is none of the wanted kind. One that was found is kept and answered from
    /// then on, without asking the service again; one that was not is asked for anew each time.
    std::shared_ptr<SharePoint::Object> BindObject(BindObjectType kind = BindObjectType::any);

    /// The object that the name is bound to, as it is; empty when it is not bound.
    std::shared_ptr<SharePoint::Object> GetObject() const noexcept;

    /// Binds the name to an object: its location becomes the object's.
    void SetObject(const std::shared_ptr<SharePoint::Object>& object);

    /// From now on the name goes along when its object is moved by another name of the session: for one that an open
    /// file is reached by.
    void FollowMoves();

    /// What is moved from one location to another takes the name with it, if it stands for that or for something below.
    void FollowMove(const std::wstring& i_url, const std::wstring& i_new_url);

    /// Null for a root.
    Qorv::ComPtr<Name> GetParent() const;

    /// A name of the same location that is not bound, for one whose object is gone: a bound name stays bound.
    Qorv::ComPtr<Name> CreateUnbound() const;

    std::shared_ptr<Session> GetSession() const noexcept;
    const std::wstring& GetUrl() const noexcept;
    /// The location without the prefix and the user id.
    std::wstring GetPath() const;

private:
    std::shared_ptr<Session> m_session;
    std::shared_ptr<SharePoint::Object> m_object;
    std::wstring m_url;
    bool m_follows_moves = false;
};

/// Whether two names are of one user's account: only then a path means the same object for both.
bool AreOfSameUser(const Name& i_name, const Name& i_other);
