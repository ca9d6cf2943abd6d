#pragma once

#include "http/Request.h"
#include "http/Response.h"
#include "qorv/Base.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// The remote storage as the file system sees it: a web client (one signed-in account), the objects in it, and the two
// sides that an object may have. All are held by shared pointers; an empty pointer means that there is no such object.
// Every operation that reaches the service throws what `Http::Session` and the reply's parser throw. One call at a
// time.

namespace SharePoint {

class File;
class Folder;
class Web;

/// Who is signed in.
struct UserInformation {
    std::wstring _id;   ///< The service's id of the account, and the user-id part of every location.
    std::wstring _name; ///< For display.
};

/// What is known of an object. Times are file times (100 ns since 1601, UTC).
struct ObjectInformation {
    std::wstring _name;
    std::wstring _path;          ///< Begins with "/"; empty for the root.
    std::uint64_t _created = 0;  ///< The service has no creation time.
    std::uint64_t _modified = 0; ///< Files only.
    std::uint64_t _size = 0;     ///< Files only, in bytes.
    bool _is_folder = true;
    bool _is_unknown = true; ///< Neither file nor folder, as far as the service says.
};

/// A file or a folder of an account, or its root.
class Object {
public:
    virtual ~Object() = default;
    /// The object's file side, empty for a folder.
    virtual std::shared_ptr<File> AsFile() = 0;
    /// The object's folder side, empty for a file.
    virtual std::shared_ptr<Folder> AsFolder() = 0;
    virtual std::shared_ptr<Web> GetWeb() = 0;
    /// Reads the object's information from the service again.
    virtual void Refresh() = 0;
    /// Moves the object. Its information stays that of the old path: bind the new path to continue with it.
    virtual void Rename(const std::wstring& new_path) = 0;
    virtual void Delete() = 0;
    /// An object with this one's record at another path: stands in for a moved object until the service is asked.
    virtual std::shared_ptr<Object> AtPath(const std::wstring& i_path) = 0;

    const ObjectInformation& GetInformation() const noexcept { return m_information; }

protected:
    ObjectInformation m_information;
};

/// The client of one account.
class Web {
public:
    enum class BindObjectType { any = 0, file = 1, folder = 2 };

    /// The folder that holds the path; empty for the root itself.
    virtual std::shared_ptr<Object> GetParentFolder(const std::wstring& path) = 0;
    /// The object at the path; empty if it is of a different kind than requested. A path that does not exist throws.
    virtual std::shared_ptr<Object> BindObject(const std::wstring& path, BindObjectType type) = 0;
    /// A file of length 0: an existing one is emptied.
    virtual std::shared_ptr<Object> CreateFile(const std::wstring& path) = 0;
    virtual std::shared_ptr<Object> CreateFolder(const std::wstring& path) = 0;

    const UserInformation& GetUserInformation() const noexcept { return m_user_information; }

protected:
    ~Web() = default;

    UserInformation m_user_information;
};

/// The file side of an object.
class File {
public:
    virtual void CopyTo(const std::wstring& to_path) = 0;
    virtual void MoveTo(const std::wstring& to_path) = 0;
    /// The reply whose body is the file.
    virtual Http::Response OpenRead() = 0;
    /// An upload of exactly `size` bytes that replaces the file when it is sent.
    virtual Http::Request OpenWrite(std::uint64_t size) = 0;
    /// Sends a completely written upload, and updates the object's information from the reply, without another request.
    virtual void FinishWrite(Http::Request& io_request) = 0;

protected:
    ~File() = default;
};

/// The folder side of an object.
class Folder {
public:
    /// Everything in the folder, in the service's order.
    virtual std::vector<std::shared_ptr<Object>> GetChildren() = 0;

protected:
    ~Folder() = default;
};

} // namespace SharePoint
