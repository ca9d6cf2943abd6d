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

SavedAccount AccountStore::Get(const std::wstring& i_id) const {
    const auto accounts = List();
    const auto found = std::ranges::find(accounts, i_id, &SavedAccount::id);
    if (found == accounts.end())
        throw Failure(HRESULT_FROM_WIN32(ERROR_NOT_FOUND), L"No account with the id \"" + i_id + L"\" is saved");
    return *found;
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
