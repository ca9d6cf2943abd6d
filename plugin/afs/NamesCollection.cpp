#include "afs/NamesCollection.h"

#include "afs/EnumNames.h"
#include "core/trace/Check.h"

#include <algorithm>

using Guard = std::lock_guard<std::mutex>;

HRESULT NamesCollection::Create(Qorv::ComPtr<NamesCollection>& o_collection) noexcept {
    TRACE_FUNCTION();
    o_collection = Qorv::Create<NamesCollection>();
    CHECK_RETURN(o_collection != nullptr, E_OUTOFMEMORY);
    return TRACE_RESULT(S_OK);
}

NamesCollection::NamesCollection() {
    TRACE_FUNCTION();
}

NamesCollection::~NamesCollection() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE NamesCollection::get_Count(ULONG* o_count) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_count != nullptr, E_POINTER);
        const Guard guard(m_critical_section);
        *o_count = static_cast<ULONG>(m_names.size());
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE NamesCollection::get_Item(ULONG i_index, Qorv::IAFS_Name** o_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_name != nullptr, E_POINTER);
        *o_name = nullptr;
        const Guard guard(m_critical_section);
        CHECK_RETURN(i_index < m_names.size(), E_INVALIDARG);
        m_names[i_index].CopyTo(o_name);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE NamesCollection::Add(Qorv::IAFS_Name* i_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(i_name != nullptr, E_INVALIDARG);
        const Guard guard(m_critical_section);
        m_names.emplace_back(i_name);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE NamesCollection::Remove(Qorv::IAFS_Name* i_name) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(i_name != nullptr, E_INVALIDARG);
        Qorv::ComPtr<Qorv::IAFS_Name> removed; // Released outside the lock: the last reference may run foreign code.
        const Guard guard(m_critical_section);
        const auto found = std::ranges::find(m_names, i_name, &Qorv::ComPtr<Qorv::IAFS_Name>::Get);
        CHECK_RETURN(found != m_names.end(), E_INVALIDARG);
        removed = std::move(*found);
        m_names.erase(found);
        return TRACE_RESULT(S_OK);
    };
}

HRESULT STDMETHODCALLTYPE NamesCollection::get_Enum(Qorv::IAFS_EnumNames** o_enum) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_enum != nullptr, E_POINTER);
        *o_enum = nullptr;
        const Guard guard(m_critical_section);
        auto enumerator = Qorv::Create<EnumNames>(m_names);
        CHECK_RETURN(enumerator != nullptr, E_OUTOFMEMORY);
        *o_enum = enumerator.Detach();
        return TRACE_RESULT(S_OK);
    };
}
