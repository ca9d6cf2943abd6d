#pragma once

#include "afs/Name.h"
#include "core/Plugin.h"
#include "core/trace/Text.h"
#include "host/MainInstance.h"
#include "qorv/Values.h"
#include "services/CancelFlag.h"
#include "services/ErrorDetails.h"
#include "support/Content.h"
#include "support/DevService.h"
#include "support/Log.h"
#include "support/Outcome.h"
#include "support/TemporaryFolder.h"

#include <optional>
#include <string>
#include <vector>

namespace Tests {

/// A location in another file system.
class ForeignName final : public Qorv::CoClass<ForeignName, Qorv::IAFS_Name> {
public:
    HRESULT STDMETHODCALLTYPE get_FileSys(Qorv::IAFS_FileSys**) noexcept override { return E_NOTIMPL; }
};

/// The plug-in in the development host, bound to one of the service's accounts, whose folder is empty. At the end the
/// plug-in is unloaded, and none of its objects or the host's may be left.
class AfsTest : public ServiceTest {
protected:
    AfsTest();
    ~AfsTest() override;

    void Unload();

    /// An account with a token, as the host saves it. The token is in clear.
    Qorv::ComPtr<Qorv::IAUX_CabNode> SavedAccount(const std::wstring& i_token, const std::wstring& i_user_id = {});
    Qorv::ComPtr<Qorv::IAFS_AccountData> CreateAccount(const std::wstring& i_token);
    Qorv::ComPtr<Qorv::IAFS_Name> Bind(const std::wstring& i_token);

    /// The unbound name of a path (or of a whole location) relative to the bound root.
    Qorv::ComPtr<Qorv::IAFS_Name> NameOf(const std::wstring& i_path);
    Qorv::ComPtr<Name> OwnName(const std::wstring& i_path) { return Qorv::OwnObject<Name>(NameOf(i_path)); }
    std::wstring TextOf(Qorv::IAFS_Name* i_name, ULONG i_flags = 0, Qorv::IAFS_Name* i_parent = nullptr);
    /// A location in the bound account.
    std::wstring Location(const std::wstring& i_path) const { return L"dropbox://" + m_user_id + i_path; }

    /// Opens a file. `m_details` has the reason of a failure.
    HRESULT Open(Qorv::IAFS_Name* i_name, ULONG i_flags, Qorv::ComPtr<Qorv::IAFS_File>& o_file);
    Qorv::ComPtr<Qorv::IAFS_File> Opened(const std::wstring& i_path, ULONG i_flags);

    /// How often the service has received a call ("files/download") since the records were cleared.
    static std::size_t Calls(const std::string& i_call);

    Qorv::ComPtr<DevHost::MainInstance> m_host;
    Qorv::ComPtr<Plugin> m_plugin;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Qorv::ComPtr<Qorv::IAFS_Name> m_root;
    std::wstring m_user_id;
    Qorv::ComPtr<DevHost::ErrorDetails> m_details;
    Qorv::ComPtr<DevHost::CancelFlag> m_canceled; ///< Set.
    std::vector<std::wstring> m_notices;          ///< The messages that the host has shown.

private:
    const ULONG m_objects_before;
    TemporaryFolder m_profile;
};

/// All bytes from the file's position to its end.
std::string ReadAll(Qorv::IAFS_File* i_file);
void WriteAll(Qorv::IAFS_File* i_file, const std::string& i_bytes);

} // namespace Tests
