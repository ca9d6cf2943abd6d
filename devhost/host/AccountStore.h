#pragma once

#include "services/CabFile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace DevHost {

// Items of the plug-in's dictionary for an account.
inline constexpr wchar_t account_id_item[] = L"UserId";
inline constexpr wchar_t account_user_name_item[] = L"UserName";
inline constexpr wchar_t account_token_item[] = L"Token";
inline constexpr wchar_t account_path_item[] = L"Path";

/// A saved account, as its dictionary describes it; neither the plug-in nor the service is asked.
struct SavedAccount {
    std::wstring id;
    std::wstring user_name;
    CabFile file;
};

/// The accounts of a profile, one dictionary each, in the order they were first saved.
class AccountStore {
public:
    explicit AccountStore(const std::filesystem::path& i_profile) : m_folder(i_profile / L"accounts") {}

    std::vector<SavedAccount> List() const;

    /// The account with this id or, ignoring case, with this user name. Throws a `Failure` if there is none, or more
    /// than one with the name.
    SavedAccount Get(const std::wstring& i_id_or_name) const;

    /// Saves an account's dictionary; replaces an older one with the same id.
    void Save(const CabNode& i_dictionary) const;

private:
    std::filesystem::path m_folder;
};

} // namespace DevHost
