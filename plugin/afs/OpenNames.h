#pragma once

#include <mutex>
#include <set>
#include <string>

class Name;

/// The names that files are open by. Several names may refer to one file, also from several sessions of one account.
/// When one of them moves the file, or a folder above it, all the others have to follow: saving by the old name would
/// create the old file again, and opening the new place would not find the file's entry in the host's cache.
class OpenNames {
public:
    /// Adds a name until `Remove`, which the name calls when it is destroyed. Adding it again does nothing. Any thread.
    void Add(Name* i_name);
    void Remove(Name* i_name) noexcept;

    /// Makes the names of a location, and those below it, refer to the new location.
    void Move(const std::wstring& i_url, const std::wstring& i_new_url);

private:
    std::mutex m_lock; ///< Names are destroyed on any thread.
    std::set<Name*> m_names;
};
