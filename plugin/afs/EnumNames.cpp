#include "afs/EnumNames.h"

#include "core/trace/Check.h"

#include <algorithm>

EnumNames::EnumNames(std::vector<Qorv::ComPtr<Qorv::IAFS_Name>> i_names, std::size_t i_cursor)
    : m_names(std::move(i_names)), m_cursor(i_cursor) {
    TRACE_FUNCTION();
}

EnumNames::~EnumNames() {
    TRACE_FUNCTION();
}

/// How many of the requested names are left.
std::size_t EnumNames::Left(ULONG i_count) const noexcept {
    TRACE_FUNCTION();
    return std::min<std::size_t>(i_count, m_names.size() - m_cursor);
}

HRESULT STDMETHODCALLTYPE EnumNames::Next(ULONG i_count, Qorv::IAFS_Name** o_names, ULONG* o_fetched) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_names != nullptr, E_POINTER);
    CHECK_RETURN(o_fetched != nullptr || i_count == 1, E_POINTER);
    const std::size_t fetched = Left(i_count);
    std::fill_n(o_names, i_count, nullptr);
    for (std::size_t i = 0; i < fetched; ++i)
        m_names[m_cursor++].CopyTo(o_names + i);
    if (o_fetched != nullptr)
        *o_fetched = static_cast<ULONG>(fetched);
    return fetched == i_count ? TRACE_RESULT(S_OK) : TRACE_RESULT(S_FALSE);
}

HRESULT STDMETHODCALLTYPE EnumNames::Skip(ULONG i_count) noexcept {
    TRACE_FUNCTION();
    const std::size_t skipped = Left(i_count);
    m_cursor += skipped;
    return skipped == i_count ? TRACE_RESULT(S_OK) : TRACE_RESULT(S_FALSE);
}

HRESULT STDMETHODCALLTYPE EnumNames::Reset() noexcept {
    TRACE_FUNCTION();
    m_cursor = 0;
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE EnumNames::Clone(Qorv::IAFS_EnumNames** o_enum) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_RETURN(o_enum != nullptr, E_POINTER);
        *o_enum = nullptr;
        auto clone = Qorv::Create<EnumNames>(m_names, m_cursor);
        CHECK_RETURN(clone != nullptr, E_OUTOFMEMORY);
        *o_enum = clone.Detach();
        return TRACE_RESULT(S_OK);
    };
}
