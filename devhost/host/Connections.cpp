#include "host/Connections.h"

#include "qorv/Values.h"

#include <algorithm>
#include <optional>

namespace DevHost {
namespace {

constexpr std::wstring_view scheme = L"dropbox://";
bool HasScheme(const std::wstring& i_text) {
    return i_text.starts_with(scheme);
}

/// A location split after its account part; text without the scheme is only a path.
struct LocationParts {
    std::wstring account;
    std::wstring path;
};

LocationParts Divide(const std::wstring& i_text) {
    if (!HasScheme(i_text))
        return {{}, i_text.starts_with(L"/") ? i_text : L"/" + i_text};
    const std::size_t path = std::min(i_text.find(L'/', scheme.size()), i_text.size());
    return {i_text.substr(scheme.size(), path - scheme.size()), i_text.substr(path)};
}

} // namespace

Connections::Connections(Qorv::IAFS_FileSys& i_file_system, const AccountStore& i_accounts, std::wstring i_user,
                         CancelFlag* i_cancel_flag)
    : m_file_system(i_file_system), m_accounts(i_accounts), m_user(std::move(i_user)), m_cancel_flag(i_cancel_flag) {}

Place Connections::Find(const std::wstring& i_text) {
    const Connection& connection = AccountFor(i_text);
    return {NameIn(connection, i_text), &connection};
}

Place Connections::FindAfterSignIn(const std::wstring& i_text) {
    m_signs_in = true;
    try {
        const Place place = Find(i_text);
        m_signs_in = false;
        return place;
    } catch (...) {
        m_signs_in = false;
        throw;
    }
}

void Connections::SaveAccountOf(Qorv::IAFS_Name* i_name) {
    const Operation operation(L"Saving the account", m_cancel_flag);
    Qorv::Variant value;
    operation.Check(m_file_system.get_Prop(i_name, L"AccountData", &value));
    if (value->vt != VT_UNKNOWN || value->punkVal == nullptr)
        throw Failure(E_UNEXPECTED, L"The plug-in does not say whose account was used");
    const auto account = Qorv::ComPtr<IUnknown>(value->punkVal).As<Qorv::IAFS_AccountData>();
    const CabNode::Node dictionary = Qorv::Create<CabNode>();
    operation.Check(account->SaveTo(dictionary));
    const std::wstring id = dictionary->MemberText(account_id_item);
    for (const SavedAccount& saved : m_accounts.List())
        if (saved.id == id) // Where an account starts is the host's own setting.
            dictionary->Member(account_path_item)->SetValue(saved.file.Load()->MemberText(account_path_item));
    m_accounts.Save(*dictionary);
    m_bound.remove_if([&](const Connection& i_connection) { return i_connection.id == id; });
}

Qorv::ComPtr<Qorv::IAFS_Name> Connections::NameIn(const Connection& i_connection, const std::wstring& i_text) const {
    LocationParts parts = Divide(i_text);
    while (parts.path.ends_with(L'/'))
        parts.path.pop_back();
    if (parts.path.empty())
        return i_connection.root;
    const std::wstring location = std::wstring(scheme) + parts.account + parts.path;
    const Operation operation(i_text, m_cancel_flag);
    operation.Check(m_file_system.StringToName(location.c_str(), Qorv::AFS_String2Name_ValidateOnly, nullptr, nullptr),
                    L"a name of a file or folder can't have such characters");
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    operation.Check(m_file_system.StringToName(location.c_str(), 0, i_connection.root, &name),
                    L"this isn't a location in the account");
    return name;
}

const Connection& Connections::AccountFor(const std::wstring& i_text) {
    if (m_user.empty() && HasScheme(i_text))
        return FindByLocation(i_text);
    const std::vector<SavedAccount> saved = m_accounts.List();
    if (m_user.empty() && saved.empty())
        throw Failure(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), L"No account is saved: sign in first (qorvhost login)");
    const Connection& connection = Bind(m_user.empty() ? saved.front() : m_accounts.Get(m_user));
    if (HasScheme(i_text) && Verify(connection, i_text) == Qorv::AFS_VerifyURL_OtherAccount)
        throw Failure(E_INVALIDARG, i_text + L": this location is in a different account than " + connection.id);
    return connection;
}

/// Asks the accounts themselves, starting with the one that the location seems to name, so that no other is bound in
/// vain.
const Connection& Connections::FindByLocation(const std::wstring& i_text) {
    std::vector<SavedAccount> saved = m_accounts.List();
    const std::wstring account = Divide(i_text).account;
    std::stable_partition(saved.begin(), saved.end(),
                          [&](const SavedAccount& i_saved) { return i_saved.id == account; });
    std::optional<Failure> first_failure;
    for (const SavedAccount& candidate : saved) {
        try {
            const Connection& connection = Bind(candidate);
            if (Verify(connection, i_text) != Qorv::AFS_VerifyURL_OtherAccount)
                return connection;
        } catch (const Failure& failure) {
            if (candidate.id == account)
                throw;
            if (!first_failure)
                first_failure = failure;
        }
    }
    if (first_failure)
        throw *first_failure;
    throw Failure(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), i_text + L": no saved account has this location");
}

const Connection& Connections::Bind(const SavedAccount& i_account) {
    const auto found = std::ranges::find(m_bound, i_account.id, &Connection::id);
    if (found != m_bound.end())
        return *found;
    const Operation operation(L"Account " + i_account.id, m_cancel_flag);
    const CabNode::Node dictionary = i_account.file.Load();
    if (m_signs_in)
        dictionary->Member(account_token_item)->SetValue(std::wstring());
    const bool signs_in = dictionary->MemberText(account_token_item).empty();
    Connection connection{i_account.id, nullptr, nullptr};
    operation.Check(
        m_file_system.CreateAccount(dictionary, operation.Details(), operation.Cancel(), &connection.account));
    if (signs_in) {
        operation.Check(connection.account->SaveTo(dictionary));
        i_account.file.Save(*dictionary);
    }
    operation.Check(m_file_system.BindToObject(connection.account, nullptr, 0, operation.Details(), operation.Cancel(),
                                               &connection.root));
    return m_bound.emplace_back(std::move(connection));
}

LONG Connections::Verify(const Connection& i_connection, const std::wstring& i_text) const {
    LONG result = Qorv::AFS_VerifyURL_OtherAccount;
    Check(i_connection.account->VerifyURL(i_text.c_str(), &result), i_text);
    return result;
}

} // namespace DevHost
