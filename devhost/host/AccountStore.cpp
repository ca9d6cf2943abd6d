#include "host/AccountStore.h"

#include "base/Failure.h"

#include <algorithm>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t file_ending[] = L".json";

/// The numbers of the files ("1.json", "2.json"...), in order.
std::vector<int> Numbers(const fs::path& i_folder) {
    std::vector<int> numbers;
    std::error_code error;
    for (fs::directory_iterator entry(i_folder, error), end; !error && entry != end; entry.increment(error)) {
        const fs::path file = entry->path();
        const int number = static_cast<int>(std::wcstol(file.stem().c_str(), nullptr, 10));
        if (number > 0 && file.filename() == std::to_wstring(number) + file_ending)
            numbers.push_back(number);
    }
    std::ranges::sort(numbers);
    return numbers;
}

CabFile FileOf(const fs::path& i_folder, int i_number) {
    return CabFile(i_folder / (std::to_wstring(i_number) + file_ending));
}

} // namespace

std::vector<SavedAccount> AccountStore::List() const {
    std::vector<SavedAccount> accounts;
    for (const int number : Numbers(m_folder)) {
        const CabFile file = FileOf(m_folder, number);
        const CabNode::Node dictionary = file.Load();
        accounts.push_back(
            {dictionary->MemberText(account_id_item), dictionary->MemberText(account_user_name_item), file});
    }
    return accounts;
}

SavedAccount AccountStore::Get(const std::wstring& i_id_or_name) const {
    const auto accounts = List();
    if (const auto found = std::ranges::find(accounts, i_id_or_name, &SavedAccount::id); found != accounts.end())
        return *found;
    const auto has_name = [&](const SavedAccount& i_account) {
        return CompareStringOrdinal(i_account.user_name.c_str(), -1, i_id_or_name.c_str(), -1, TRUE) == CSTR_EQUAL;
    };
    const auto named = std::ranges::find_if(accounts, has_name);
    if (named == accounts.end())
        throw Failure(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), L"No account with the id or name \"" + i_id_or_name +
                                                               L"\" is saved. To see which are: qorvhost accounts");
    if (std::ranges::count_if(accounts, has_name) > 1)
        throw Failure(E_INVALIDARG,
                      L"Several accounts have the name \"" + i_id_or_name + L"\". To see their ids: qorvhost accounts");
    return *named;
}

void AccountStore::Save(const CabNode& i_dictionary) const {
    const auto accounts = List();
    const auto found = std::ranges::find(accounts, i_dictionary.MemberText(account_id_item), &SavedAccount::id);
    if (found != accounts.end()) {
        found->file.Save(i_dictionary);
        return;
    }
    const std::vector<int> numbers = Numbers(m_folder);
    FileOf(m_folder, numbers.empty() ? 1 : numbers.back() + 1).Save(i_dictionary);
}

} // namespace DevHost
