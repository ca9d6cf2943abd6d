#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"

#include <mutex>
#include <vector>

/// A list of locations in the order in which they were added, with duplicates. Any thread: every operation is atomic.
class NamesCollection final : public Qorv::CoClass<NamesCollection, Qorv::IAFS_NamesCollection> {
public:
    /// An empty one.
    static HRESULT Create(Qorv::ComPtr<NamesCollection>& o_collection) noexcept;

    NamesCollection();
    ~NamesCollection();

    HRESULT STDMETHODCALLTYPE get_Count(ULONG* o_count) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Item(ULONG i_index, Qorv::IAFS_Name** o_name) noexcept override;
    HRESULT STDMETHODCALLTYPE Add(Qorv::IAFS_Name* i_name) noexcept override;
    HRESULT STDMETHODCALLTYPE Remove(Qorv::IAFS_Name* i_name) noexcept override;
    /// Enumerates the names that are in the list now.
    HRESULT STDMETHODCALLTYPE get_Enum(Qorv::IAFS_EnumNames** o_enum) noexcept override;

private:
    std::mutex m_critical_section;
    std::vector<Qorv::ComPtr<Qorv::IAFS_Name>> m_names;
};
