#include "commands/Commands.h"

#include "commands/Item.h"
#include "commands/Shell.h"
#include "services/NameText.h"

#include <algorithm>
#include <functional>
#include <tuple>

namespace DevHost {
namespace {

struct Entry {
    Qorv::ComPtr<Qorv::IAFS_Name> name;
    Item item;
    std::string sort_key;
};

using ItemSink = std::function<void(Item)>;

/// Digits count as numbers, and hyphens like other characters: the order of names in the plug-in's dialogs.
std::string SortKey(const std::wstring& i_title) {
    constexpr DWORD flags = LCMAP_SORTKEY | NORM_IGNORECASE | SORT_DIGITSASNUMBERS | SORT_STRINGSORT;
    const auto map = [&](char* o_key, int i_size) { // The platform writes bytes, and takes the size in bytes.
        return LCMapStringEx(LOCALE_NAME_INVARIANT, flags, i_title.data(), static_cast<int>(i_title.size()),
                             reinterpret_cast<LPWSTR>(o_key), i_size, nullptr, nullptr, 0);
    };
    std::string key(static_cast<std::size_t>(map(nullptr, 0)), '\0');
    map(key.data(), static_cast<int>(key.size()));
    return key;
}

/// Folders first, each group by name.
void Sort(std::vector<Entry>& io_entries) {
    for (Entry& entry : io_entries)
        entry.sort_key = SortKey(entry.item.title);
    std::ranges::sort(io_entries, [](const Entry& i_left, const Entry& i_right) {
        return std::tie(i_right.item.is_folder, i_left.sort_key, i_left.item.title) <
               std::tie(i_left.item.is_folder, i_right.sort_key, i_right.item.title);
    });
}

/// The children of a folder, in the order of the plug-in's dialogs.
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
            break;
        Entry entry;
        i_operation.Check(child->get_Name(&entry.name));
        entry.item = Item::Read(io_shell.FileSystem(), entry.name, i_operation);
        entries.push_back(std::move(entry));
    }
    Sort(entries);
    return entries;
}

/// Hands on the items below a folder as they come, each folder followed by its contents. A child whose location leads
/// no further, because it has none at the service, is listed but not entered, which would never end.
void ReadItems(Shell& io_shell, Qorv::IAFS_Name* i_folder, const std::wstring& i_prefix, bool i_is_recursive,
               const ItemSink& i_sink) {
    const Operation operation = io_shell.Begin(DisplayPathOf(i_folder));
    const std::wstring location = LocationOf(i_folder);
    for (Entry& entry : Children(io_shell, i_folder, operation)) {
        const bool leads_on = entry.item.location.size() > location.size();
        const bool is_entered = i_is_recursive && entry.item.is_folder && leads_on;
        const std::wstring path = i_prefix + entry.item.title;
        entry.item.path = path;
        i_sink(std::move(entry.item));
        if (is_entered)
            ReadItems(io_shell, entry.name, path + L"/", true, i_sink);
    }
}

using Row = std::vector<std::wstring>;
constexpr std::size_t size_column = 0;

Row RowOf(const Item& i_item) {
    return {i_item.SizeText(), i_item.ModifiedText(), i_item.path + (i_item.is_folder ? L"/" : L"")};
}

/// One row of a table whose other rows aren't known yet: as wide as usual sizes and times need.
void ShowRow(const Output& i_out, const Item& i_item) {
    constexpr std::size_t widths[] = {13, 16}; // "9 999 999 999", "2000-12-31 12:00"
    Row row = RowOf(i_item);
    for (std::size_t column = 0; column < std::size(widths); ++column)
        if (row[column].size() < widths[column])
            row[column].insert(0, widths[column] - row[column].size(), L' ');
    i_out.Table({row}, size_column);
}

void ShowTable(const Output& i_out, const std::vector<Item>& i_items) {
    std::vector<Row> rows;
    rows.reserve(i_items.size());
    for (const Item& item : i_items)
        rows.push_back(RowOf(item));
    i_out.Table(rows, size_column);
}

/// Says so if a folder can't be read because it is a file.
void ReadFolder(Shell& io_shell, Qorv::IAFS_Name* i_folder, bool i_is_recursive, const ItemSink& i_sink) {
    try {
        ReadItems(io_shell, i_folder, {}, i_is_recursive, i_sink);
    } catch (const Failure& failure) {
        const std::wstring path = DisplayPathOf(i_folder);
        if (failure.Code() == Qorv::ErrorCanceled ||
            !IsThere(io_shell.FileSystem(), i_folder, false, io_shell.Begin(path)))
            throw;
        throw Failure(failure.Code(), path + L" is a file; to see it: qorvhost stat");
    }
}

} // namespace

void ListFolder(Shell& io_shell, const CommandLine& i_line) {
    const Place place = io_shell.Locations().Find(i_line.Has("LOCATION") ? i_line.Text("LOCATION") : L"/");
    const bool is_recursive = i_line.Has("-R");
    const bool is_json = io_shell.Out().IsJson();
    if (is_recursive && !is_json) {
        ReadFolder(io_shell, place.name, true, [&](const Item& i_item) { ShowRow(io_shell.Out(), i_item); });
        return;
    }
    std::vector<Item> items;
    ReadFolder(io_shell, place.name, is_recursive, [&](Item i_item) { items.push_back(std::move(i_item)); });
    if (!is_json) {
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
