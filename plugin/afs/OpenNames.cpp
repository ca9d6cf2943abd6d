#include "afs/OpenNames.h"

#include "afs/Name.h"
#include "core/trace/Trace.h"

void OpenNames::Add(Name* i_name) {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    m_names.insert(i_name);
}

void OpenNames::Remove(Name* i_name) noexcept {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    m_names.erase(i_name);
}

void OpenNames::Move(const std::wstring& i_url, const std::wstring& i_new_url) {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    for (Name* const name : m_names)
        name->FollowMove(i_url, i_new_url);
}
