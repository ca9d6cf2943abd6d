#include "commands/Commands.h"

#include "commands/JsonValue.h"
#include "commands/Shell.h"

namespace DevHost {
namespace {

/// The data that the plug-in makes the account from. A saved account keeps its id, so that nobody signs in as another
/// user.
CabNode::Node SourceDictionary(Shell& io_shell, const CommandLine& i_line) {
    const CabNode::Node source =
        i_line.Has("ID") ? io_shell.Accounts().Get(i_line.Text("ID")).file.Load() : Qorv::Create<CabNode>();
    source->Member(account_token_item)
        ->SetValue(i_line.Text("--token")); // Clear text, which the plug-in accepts as is.
    return source;
}

} // namespace

void LogIn(Shell& io_shell, const CommandLine& i_line) {
    const CabNode::Node source = SourceDictionary(io_shell, i_line);
    const Operation operation = io_shell.Begin(L"Signing in");
    Qorv::ComPtr<Qorv::IAFS_AccountData> account;
    operation.Check(io_shell.FileSystem().CreateAccount(source, operation.Details(), operation.Cancel(), &account));
    const CabNode::Node saved = Qorv::Create<CabNode>();
    operation.Check(account->SaveTo(saved));
    io_shell.Accounts().Save(*saved);

    const std::wstring id = saved->MemberText(account_id_item);
    const std::wstring user_name = saved->MemberText(account_user_name_item);
    if (io_shell.Out().IsJson())
        io_shell.Out().Json(JsonValue().Begin().Text("id", id).Text("name", user_name).End().Done());
    else
        io_shell.Out().Line(L"Signed in as " + user_name + L" (" + id + L")");
}

void ListAccounts(Shell& io_shell, const CommandLine&) {
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

void LogOut(Shell& io_shell, const CommandLine& i_line) {
    const SavedAccount account = io_shell.Accounts().Get(i_line.Text("ID"));
    account.file.Remove();
    if (io_shell.Out().IsJson())
        io_shell.Out().Json(JsonValue().Begin().Text("id", account.id).Text("name", account.user_name).End().Done());
    else
        io_shell.Out().Line(L"Forgot " + account.user_name + L" (" + account.id +
                            L"). Its token lives on at the service until it is revoked there.");
}

} // namespace DevHost
