#include "core/host/Resource.h"

#include "core/trace/Trace.h"

#include <shlwapi.h>

HMODULE g_module = nullptr;

Resource::Resource(const wchar_t* i_id, const wchar_t* i_type) noexcept {
    TRACE_FUNCTION();
    const HRSRC resource = FindResourceW(g_module, i_id, i_type);
    if (resource == nullptr)
        return;
    const HGLOBAL loaded = LoadResource(g_module, resource);
    if (loaded == nullptr)
        return;
    m_data = LockResource(loaded);
    m_size = m_data != nullptr ? SizeofResource(g_module, resource) : 0;
}

Qorv::ComPtr<IStream> Resource::OpenStream() const noexcept {
    TRACE_FUNCTION();
    Qorv::ComPtr<IStream> stream;
    if (m_data != nullptr)
        stream.Attach(SHCreateMemStream(static_cast<const BYTE*>(m_data), static_cast<UINT>(m_size)));
    return stream;
}
