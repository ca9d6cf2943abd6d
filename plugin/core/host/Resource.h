#pragma once

#include "core/host/ResourceIds.h"
#include "qorv/Base.h"

#include <cstddef>

/// The module that resources are read from; set once when the module is loaded.
extern HMODULE g_module;

/// A resource of the module. It stays mapped as long as the module is loaded.
class Resource {
public:
    /// A missing resource has no data and the size 0.
    Resource(const wchar_t* i_id, const wchar_t* i_type) noexcept;

    const void* GetData() const noexcept { return m_data; }
    std::size_t GetSize() const noexcept { return m_size; }

    /// A stream over a copy of the bytes; null for a missing resource.
    Qorv::ComPtr<IStream> OpenStream() const noexcept;

private:
    const void* m_data = nullptr;
    std::size_t m_size = 0;
};
