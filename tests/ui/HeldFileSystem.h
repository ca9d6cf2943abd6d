#pragma once

#include "devhost/UnusedInterfaces.h"

#include <atomic>
#include <functional>

namespace Tests {

/// An enumeration that does something before each item.
class HeldEnumFolder final : public Qorv::CoClass<HeldEnumFolder, Qorv::IAFS_EnumFolder> {
public:
    HeldEnumFolder(Qorv::IAFS_EnumFolder* i_inner, std::function<void()> i_before_next)
        : m_inner(i_inner), m_before_next(std::move(i_before_next)) {}
    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name**) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset(Qorv::IQorv_ErrorDetails*, Qorv::IQorv_CancelFlag*) noexcept override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Next(Qorv::IAFS_EnumFolderItem** out_enum_item) noexcept override {
        m_before_next();
        return m_inner->Next(out_enum_item);
    }

private:
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> m_inner;
    std::function<void()> m_before_next;
};

/// The real file system as a navigator uses it, with a place where a test can hold the worker.
class HeldFileSystem final : public UnusedFileSystem<HeldFileSystem> {
public:
    explicit HeldFileSystem(Qorv::IAFS_FileSys* i_inner) : m_inner(i_inner) {}

    using UnusedFileSystem::EnumFolder;
    HRESULT STDMETHODCALLTYPE NamesAreEqual(Name* name1, Name* name2, VARIANT_BOOL* out_are_equal) noexcept override {
        return m_inner->NamesAreEqual(name1, name2, out_are_equal);
    }
    HRESULT STDMETHODCALLTYPE GetFileInfo(Name* name, Details* out_details, Cancel* cancel,
                                          Qorv::IAFS_FileInfo** out_info) noexcept override {
        in_file_info(cancel);
        return m_inner->GetFileInfo(name, out_details, cancel, out_info);
    }
    HRESULT STDMETHODCALLTYPE NameGetParent(Name* name, Name** out_parent) noexcept override {
        ++parent_lookups;
        return m_inner->NameGetParent(name, out_parent);
    }
    HRESULT STDMETHODCALLTYPE EnumFolder(Name* name, ULONG flags, Details* out_details, Cancel* cancel,
                                         Qorv::IAFS_EnumFolder** out_enum) noexcept override {
        in_listing(cancel);
        Qorv::ComPtr<Qorv::IAFS_EnumFolder> inner = m_listing;
        const HRESULT result = inner != nullptr ? inner->Reset(out_details, cancel)
                                                : m_inner->EnumFolder(name, flags, out_details, cancel, &inner);
        *out_enum = SUCCEEDED(result) ? Qorv::Create<HeldEnumFolder>(inner, before_next).Detach() : nullptr;
        return result;
    }

    /// From now on every enumeration is this one: for tests with a thousand loads.
    void KeepListing(Name* i_name) { m_inner->EnumFolder(i_name, nullptr, nullptr, &m_listing); }

    std::atomic<int> parent_lookups = 0;
    std::function<void()> before_next = [] {};
    std::function<void(Cancel*)> in_file_info = [](Cancel*) {};
    std::function<void(Cancel*)> in_listing = [](Cancel*) {};

private:
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_inner;
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> m_listing;
};

} // namespace Tests
