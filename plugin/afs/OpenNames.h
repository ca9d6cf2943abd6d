#pragma once

#include <mutex>
#include <set>
#include <string>

class Name;

/// The names that open files of one session are reached by. Several names may stand for one file; when it, or a folder
/// above it, is moved by one of them, all others have to go along: a save by a name that stayed behind would make the
/// old file anew, and an open of the new place would not find the entry that the file has in the host's cache.
class OpenNames {
public:
    /// Until `Remove`, which a name calls when it goes. Any thread. A second time does nothing.
    void Add(Name* i_name);
    void Remove(Name* i_name) noexcept;

    /// Makes the names of a location, and of those below it, stand for the same below another.
    void Move(const std::wstring& i_url, const std::wstring& i_new_url);

private:
    std::mutex m_lock; ///< Names go on any thread.
    std::set<Name*> m_names;
};
