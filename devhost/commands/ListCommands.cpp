#include "commands/Commands.h"

#include "commands/Item.h"
#include "commands/Shell.h"
#include "services/NameText.h"

namespace DevHost {
namespace {

struct Entry {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    Item item;
};

/// The children of a folder, in the service's order.
std::vector<Entry> Children(Shell& io_shell, Qorv::IAFS_Name* i_folder, const Operation& i_operation) {
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> children;
    i_operation.Check(
        io_shell.FileSystem().EnumFolder(i_folder, i_operation.Details(), i_operation.Cancel(), &children));
    std::vector<Entry> entries;
    for (;;) {
        Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> child;
        const HRESULT result = children->Next(&child);
        i_operation.Check(result);
        if (result == S_FALSE)
            return entries;
        Entry entry;
        i_operation.Check(child->get_Name(&entry.name));
        entry.item = Item::Read(io_shell.FileSystem(), entry.name, i_operation);
        entries.push_back(std::move(entry));
    }
}

/// The items below a folder, each folder followed by its contents. A child whose location leads no further, because it
/// has none at the service, is listed but not entered, which would never end.
void CollectItems(Shell& io_shell, Qorv::IAFS_Name* i_folder, const std::wstring& i_prefix, bool i_is_recursive,
                  std::vector<Item>& io_items) {
    const Operation operation = io_shell.Begin(DisplayPathOf(i_folder));
    const std::wstring location = LocationOf(i_folder);
    for (Entry& entry : Children(io_shell, i_folder, operation)) {
        const bool leads_on = entry.item.location.size() > location.size();
        const bool is_entered = i_is_recursive && entry.item.is_folder && leads_on;
        const std::wstring path = i_prefix + entry.item.title;
        io_items.push_back(std::move(entry.item));
        io_items.back().path = path;
        if (is_entered)
            CollectItems(io_shell, entry.name, path + L"/", true, io_items);
    }
}

void ShowTable(const Output& i_out, const std::vector<Item>& i_items) {
    std::vector<std::vector<std::wstring>> rows;
    rows.reserve(i_items.size());
    for (const Item& item : i_items)
        rows.push_back({item.SizeText(), item.ModifiedText(), item.path + (item.is_folder ? L"/" : L"")});
    constexpr std::size_t size_column = 0;
    i_out.Table(rows, size_column);
}

} // namespace

void ListFolder(Shell& io_shell, const CommandLine& i_line) {
    const Place place = io_shell.Locations().Find(i_line.Has("LOCATION") ? i_line.Text("LOCATION") : L"/");
    std::vector<Item> items;
    CollectItems(io_shell, place.name, {}, i_line.Has("-R"), items);
    if (!io_shell.Out().IsJson()) {
        ShowTable(io_shell.Out(), items);
        return;
    }
    JsonValue json;
    json.BeginArray();
    for (const Item& item : items)
        item.Write(json);
    io_shell.Out().Json(json.EndArray().Done());
}

void ShowItem(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    const Item item = Item::Read(io_shell.FileSystem(), place.name, io_shell.Begin(location));
    if (io_shell.Out().IsJson()) {
        JsonValue json;
        item.Write(json);
        io_shell.Out().Json(json.Done());
        return;
    }
    std::vector<std::vector<std::wstring>> rows{{L"location", item.location},
                                                {L"name", item.title.empty() ? L"/" : item.title},
                                                {L"kind", item.is_folder ? L"folder" : L"file"}};
    if (!item.is_folder)
        rows.push_back({L"size", item.SizeText() + L" bytes"});
    if (item.modified != 0)
        rows.push_back({L"modified", item.ModifiedText()});
    io_shell.Out().Table(rows);
}

} // namespace DevHost
