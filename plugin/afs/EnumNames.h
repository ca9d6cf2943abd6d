#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"

#include <vector>

/// Enumerates a list of names as it was when the enumerator was created. One thread at a time.
class EnumNames final : public Qorv::CoClass<EnumNames, Qorv::IAFS_EnumNames> {
public:
    explicit EnumNames(std::vector<Qorv::ComPtr<Qorv::IAFS_Name>> i_names, std::size_t i_cursor = 0);
    ~EnumNames();

    HRESULT STDMETHODCALLTYPE Next(ULONG i_count, Qorv::IAFS_Name** o_names, ULONG* o_fetched) noexcept override;
    HRESULT STDMETHODCALLTYPE Skip(ULONG i_count) noexcept override;
    HRESULT STDMETHODCALLTYPE Reset() noexcept override;
    HRESULT STDMETHODCALLTYPE Clone(Qorv::IAFS_EnumNames** o_enum) noexcept override;

private:
    std::size_t Left(ULONG i_count) const noexcept;

    const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>> m_names;
    std::size_t m_cursor;
};
