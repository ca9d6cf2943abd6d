#include "core/Resource.h"

#include "core/Trace.h"

#include <cstring>

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
    if (m_data == nullptr)
        return nullptr;
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, m_size);
    if (memory == nullptr)
        return nullptr;
    std::memcpy(GlobalLock(memory), m_data, m_size);
    GlobalUnlock(memory);
    Qorv::ComPtr<IStream> stream;
    if (FAILED(CreateStreamOnHGlobal(memory, TRUE, &stream)))
        GlobalFree(memory);
    return stream;
}
