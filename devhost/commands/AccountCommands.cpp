#include "commands/Commands.h"

#include "commands/JsonValue.h"
#include "commands/Shell.h"

namespace DevHost {
namespace {

// Items of the plug-in's own dictionary of an account.
constexpr wchar_t id_item[] = L"UserId";
constexpr wchar_t user_name_item[] = L"UserName";
constexpr wchar_t token_item[] = L"Token";

struct LogInArguments {
    std::wstring token;
    std::wstring id;
};

LogInArguments ReadArguments(const Arguments& i_arguments) {
    LogInArguments result;
    for (size_t i = 0; i < i_arguments.size(); ++i) {
        if (i_arguments[i] == L"--token" && i + 1 < i_arguments.size())
            result.token = i_arguments[++i];
        else if (i_arguments[i].starts_with(L"-") || !result.id.empty())
            throw UsageError();
        else
            result.id = i_arguments[i];
    }
    return result;
}

/// What the plug-in makes the account of: a saved one keeps its id, so that nobody signs in as somebody else.
CabNode::Node SourceDictionary(Shell& io_shell, const LogInArguments& i_arguments) {
    const CabNode::Node source =
        i_arguments.id.empty() ? Qorv::Create<CabNode>() : io_shell.Accounts().Get(i_arguments.id).file.Load();
    source->Member(token_item)->SetValue(i_arguments.token); // Clear text, which the plug-in takes as it stands.
    return source;
}

} // namespace

void LogIn(Shell& io_shell, const Arguments& i_arguments) {
    const CabNode::Node source = SourceDictionary(io_shell, ReadArguments(i_arguments));
    const Operation operation = io_shell.Begin(L"Signing in");
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    operation.Check(io_shell.FileSystem().CreateAccount(source, operation.Details(), operation.Cancel(), &account));
    const CabNode::Node saved = Qorv::Create<CabNode>();
    operation.Check(account->SaveTo(saved));
    io_shell.Accounts().Save(*saved);

    const std::wstring id = saved->MemberText(id_item);
    const std::wstring user_name = saved->MemberText(user_name_item);
    if (io_shell.Out().IsJson())
        io_shell.Out().Json(JsonValue().Begin().Text("id", id).Text("name", user_name).End().Done());
    else
        io_shell.Out().Line(L"Signed in as " + user_name + L" (" + id + L")");
}

void ListAccounts(Shell& io_shell, const Arguments&) {
    const std::vector<SavedAccount> accounts = io_shell.Accounts().List();
    if (io_shell.Out().IsJson()) {
        JsonValue json;
        json.BeginArray();
        for (const SavedAccount& account : accounts)
            json.Begin().Text("id", account.id).Text("name", account.user_name).End();
        io_shell.Out().Json(json.EndArray().Done());
        return;
    }
    if (accounts.empty()) {
        io_shell.Out().Line(L"No account is saved. To save one: qorvhost login");
        return;
    }
    std::vector<std::vector<std::wstring>> rows;
    rows.reserve(accounts.size());
    for (const SavedAccount& account : accounts)
        rows.push_back({account.id, account.user_name});
    io_shell.Out().Table(rows);
}

void LogOut(Shell& io_shell, const Arguments& i_arguments) {
    const SavedAccount account = io_shell.Accounts().Get(i_arguments.front());
    account.file.Remove();
    if (io_shell.Out().IsJson())
        io_shell.Out().Json(JsonValue().Begin().Text("id", account.id).Text("name", account.user_name).End().Done());
    else
        io_shell.Out().Line(L"Forgot " + account.user_name + L" (" + account.id +
                            L"). Its token lives on at the service until it is revoked there.");
}

} // namespace DevHost
