#pragma once

#include "UnusedInterfaces.h"
#include "base/Failure.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace Tests {

/// What every scripted failure answers.
constexpr HRESULT connection_broke = static_cast<HRESULT>(0x80072EFE);

/// The files at a service, and the outcome of transfers.
struct ScriptedRemote {
    std::map<std::wstring, std::string> files; ///< By location.
    std::string calls;                         ///< The callbacks' calls in order: "read 0;write 0+5;end;"...
    std::optional<std::uint64_t> fail_read_at; ///< The read of this position fails, once.
    std::optional<std::uint64_t> fail_write_at;
    bool fail_end = false;
    bool fail_lookup = false;
};

class ScriptedName final : public Qorv::CoClass<ScriptedName, Qorv::IAFS_Name> {
public:
    static constexpr IID ClassId = {0x5cf38a7a, 0x0b2e, 0x4b19, {0x90, 0x4e, 0x8b, 0x11, 0x25, 0x6c, 0x0d, 0x4b}};
    ScriptedName(Qorv::IAFS_FileSys* i_file_system, std::wstring i_location)
        : location(std::move(i_location)), m_file_system(i_file_system) {}

    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys** out_file_system) noexcept override {
        m_file_system.CopyTo(out_file_system);
        return S_OK;
    }

    std::wstring location; ///< Different after a rename.

private:
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
};

class ScriptedFileSystem final : public UnusedFileSystem<ScriptedFileSystem> {
public:
    explicit ScriptedFileSystem(ScriptedRemote& io_remote) : m_remote(io_remote) {}

    HRESULT STDMETHODCALLTYPE NameToString(Name* name, ULONG, Name*, BSTR* out_name) noexcept override {
        return DevHost::AnswerText(Qorv::OwnObject<ScriptedName>(name)->location, out_name);
    }
    HRESULT STDMETHODCALLTYPE GetFileInfo(Name* name, Details*, Cancel*, Qorv::IAFS_FileInfo**) noexcept override {
        if (m_remote.fail_lookup)
            return connection_broke;
        return m_remote.files.contains(Qorv::OwnObject<ScriptedName>(name)->location) ? S_OK : E_INVALIDARG;
    }

private:
    ScriptedRemote& m_remote;
};

class ScriptedFile final : public UnusedFile<ScriptedFile> {
public:
    explicit ScriptedFile(Qorv::IAFS_Name* i_name) : m_name(i_name) {}

    HRESULT STDMETHODCALLTYPE get_Name(Qorv::IAFS_Name** out_name) noexcept override {
        m_name.CopyTo(out_name);
        return S_OK;
    }

private:
    Qorv::ComPtr<Qorv::IAFS_Name> m_name;
};

/// As strict about the order of transfers as the plug-in's own.
class ScriptedCallback final : public Qorv::CoClass<ScriptedCallback, Qorv::IAFS_FileCacheCallbacks> {
public:
    ScriptedCallback(ScriptedRemote& io_remote, ScriptedName* i_name) : m_remote(io_remote), m_name(i_name) {}

    using Details = Qorv::IQorv_ErrorDetails;
    using Cancel = Qorv::IQorv_CancelFlag;
    HRESULT STDMETHODCALLTYPE Read(ULONGLONG pos, void* data, ULONG size, ULONG* out_read, Details* out_error_details,
                                   Cancel* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE Write(ULONGLONG pos, const void* data, ULONG size, ULONG* out_written,
                                    Details* out_error_details, Cancel* cancel_flag) noexcept override;
    HRESULT STDMETHODCALLTYPE SetSize(ULONGLONG new_size, Details*, Cancel*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSize(ULONGLONG* out_size, Details*, Cancel*) noexcept override;
    HRESULT STDMETHODCALLTYPE BeginWrite(Details*, Cancel*) noexcept override;
    HRESULT STDMETHODCALLTYPE EndWrite(Details* out_error_details, Cancel*) noexcept override;

private:
    HRESULT Fail(Details* o_details, const wchar_t* i_text) noexcept;

    ScriptedRemote& m_remote;
    Qorv::ComPtr<ScriptedName> m_name;
    std::uint64_t m_position = 0;
    std::uint64_t m_announced = 0;
    std::string m_upload;
};

} // namespace Tests
