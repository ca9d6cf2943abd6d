#pragma once

#include "services/CabFile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace DevHost {

// Items of the plug-in's own dictionary of an account.
inline constexpr wchar_t account_id_item[] = L"UserId";
inline constexpr wchar_t account_user_name_item[] = L"UserName";
inline constexpr wchar_t account_token_item[] = L"Token";

/// A saved account: what its dictionary says, without asking the plug-in or the service.
struct SavedAccount {
    std::wstring id;
    std::wstring user_name;
    CabFile file;
};

/// The accounts of a profile, a dictionary each, in the order in which they were first saved.
class AccountStore {
public:
    explicit AccountStore(const std::filesystem::path& i_profile) : m_folder(i_profile / L"accounts") {}

    std::vector<SavedAccount> List() const;

    /// Throws a `Failure` when there is no account of this id.
    SavedAccount Get(const std::wstring& i_id) const;

    /// Keeps the dictionary of an account, in place of an older one of the same id.
    void Save(const CabNode& i_dictionary) const;

private:
    std::filesystem::path m_folder;
};

} // namespace DevHost
