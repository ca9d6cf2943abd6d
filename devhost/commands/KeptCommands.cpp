#include "commands/Commands.h"

#include "commands/Item.h"
#include "commands/Shell.h"
#include "host/RemoteFile.h"

#include <algorithm>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

void List(const Output& i_out, const std::vector<KeptFile>& i_kept) {
    std::vector<std::vector<std::wstring>> rows;
    JsonValue json;
    json.BeginArray();
    for (const KeptFile& kept : i_kept) {
        Item item;
        item.location = kept.location;
        item.size = kept.size;
        item.modified = kept.write_time;
        rows.push_back({kept.Id(), item.ModifiedText(), item.SizeText(), kept.location});
        json.Begin().Text("id", kept.Id()).Text("location", kept.location).Number("size", kept.size);
        json.Text("file", kept.path.wstring()).End();
    }
    if (i_out.IsJson())
        i_out.Json(json.EndArray().Done());
    else if (rows.empty())
        i_out.Line(L"Nothing is kept: everything has reached the service.");
    else
        i_out.Table(rows, 2);
}

KeptFile Find(const std::vector<KeptFile>& i_kept, const std::wstring& i_id) {
    const auto found = std::ranges::find(i_kept, i_id, &KeptFile::Id);
    if (found == i_kept.end())
        throw Failure(HRESULT_FROM_WIN32(ERROR_NOT_FOUND),
                      L"Nothing is kept under \"" + i_id + L"\". To see what is: qorvhost kept");
    return *found;
}

/// Opening a file for writing picks up the newest bytes kept for it, and closing it sends them.
void Send(Shell& io_shell, const KeptFile& i_kept) {
    if (i_kept.location.empty()) // Of a damaged note.
        throw Failure(E_INVALIDARG, L"The location of these bytes is unknown; save them to a file instead");
    const Place place = io_shell.Locations().Find(i_kept.location);
    const Operation operation = io_shell.Begin(i_kept.location);
    RemoteFile file(io_shell.FileSystem(), io_shell.Plugin().Cache(), place.name,
                    Qorv::AFS_OpenFile_Write | Qorv::AFS_OpenFile_OpenAlways, operation);
    file.KeepOnFailure();
    file.Close();
}

/// The bytes are kept until they are sent or dropped.
fs::path Save(const KeptFile& i_kept, const std::wstring& i_file) {
    const fs::path target =
        i_file.empty() ? fs::path(i_kept.location.substr(i_kept.location.find_last_of(L'/') + 1)) : fs::path(i_file);
    if (!CopyFileW(i_kept.path.c_str(), target.c_str(), TRUE)) // Replaces nothing.
        throw LastErrorFailure(L"Cannot save to " + target.wstring());
    return target;
}

} // namespace

void ManageKept(Shell& io_shell, const CommandLine& i_line) {
    FilesCache& cache = io_shell.Plugin().Cache();
    const std::wstring action = i_line.Text("ACTION");
    if (action.empty()) {
        List(io_shell.Out(), cache.Kept());
        return;
    }
    const KeptFile kept = Find(cache.Kept(), i_line.Text("ID"));
    std::wstring done;
    if (action == L"send") {
        Send(io_shell, kept);
        done = L"Sent " + kept.location;
    } else if (action == L"save") {
        done = L"Saved " + kept.location + L" to " + Save(kept, i_line.Text("FILE")).wstring();
    } else {
        cache.DropKept(kept);
        done = L"Dropped the changes of " + kept.location;
    }
    if (io_shell.Out().IsJson())
        io_shell.Out().Json(JsonValue().Begin().Text("id", kept.Id()).Text("location", kept.location).End().Done());
    else
        io_shell.Out().Line(done);
}

} // namespace DevHost
