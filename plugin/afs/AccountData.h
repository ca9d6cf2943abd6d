#pragma once

#include "qorv/Afs.h"
#include "qorv/CoClass.h"

#include <string>

class HostServices;

/// A saved account: its user, the access token, and its start location. The host keeps it in a settings dictionary and
/// uses it on its main thread; no lock.
class AccountData final : public Qorv::CoClass<AccountData, Qorv::IAFS_AccountData> {
public:
    static constexpr IID ClassId = {0xc4bc25e8, 0xfa8a, 0x4c4b, {0x8e, 0x7f, 0x57, 0x61, 0x7d, 0xed, 0x4c, 0xd3}};

    /// Reads an account from a dictionary, after applying the template to it. Values that are missing or are not texts
    /// stay empty.
    static HRESULT Create(const Qorv::ComPtr<HostServices>& i_plugin, Qorv::IAUX_CabNode* i_cab,
                          Qorv::ComPtr<AccountData>& o_account);

    /// An account without a user. Throws E_UNEXPECTED as an `HResultException` if the plug-in has been unloaded.
    explicit AccountData(Qorv::ComPtr<HostServices> i_plugin, std::wstring i_path = {});
    ~AccountData();

    HRESULT STDMETHODCALLTYPE get_URL(BSTR* o_url) noexcept override;
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* o_user_name) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveTo(Qorv::IAUX_CabNode* o_cab) noexcept override;
    /// A location that names only the beginning of this account's user id counts as its own, deliberately.
    HRESULT STDMETHODCALLTYPE VerifyURL(Qorv::PCStr i_url, LONG* o_result) noexcept override;

    std::wstring GetUserId() const;
    /// The bare token, in clear.
    std::wstring GetToken() const;
    std::wstring UserName() const;
    void SetUserId(std::wstring user_id);
    void SetToken(std::wstring token);
    void SetUserName(std::wstring user_name);

private:
    HRESULT LoadFrom(Qorv::IAUX_CabNode* i_cab);

    Qorv::ComPtr<HostServices> m_plugin;
    std::wstring m_path;
    std::wstring m_user_id;
    std::wstring m_token;
    std::wstring m_user_name;
};
