#include "commands/Commands.h"

#include "commands/Item.h"
#include "commands/JsonValue.h"
#include "commands/Shell.h"
#include "commands/Transfer.h"
#include "services/NameText.h"

namespace DevHost {
namespace {

void Report(const Output& i_out, const std::wstring& i_sentence, const std::wstring& i_location) {
    if (i_out.IsJson())
        i_out.Json(JsonValue().Begin().Text("location", i_location).End().Done());
    else
        i_out.Line(i_sentence);
}

/// A file and its destination.
struct Course {
    Place from;
    Place to;
    std::wstring from_path;
    bool is_same_account;
};

/// Throws a `Failure` for a source that isn't a file: the plug-in doesn't move or copy folders.
Course ReadCourse(Shell& io_shell, const CommandLine& i_line, const wchar_t* i_verb) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place from = io_shell.Locations().Find(location);
    const Item item = Item::Read(io_shell.FileSystem(), from.name, io_shell.Begin(location));
    if (item.is_folder)
        throw Failure(E_INVALIDARG, location + L": a folder cannot be " + i_verb);
    const Place to = io_shell.Locations().Find(TargetText(i_line.Text("NEW-LOCATION"), item.title));
    return {from, to, DisplayPathOf(from.name), from.connection == to.connection};
}

/// Replaces nothing, as a copy within an account does. Only a clear "there is no such file" lets the copy begin.
void RequireNewTarget(Shell& io_shell, const Course& i_course) {
    const std::wstring path = DisplayPathOf(i_course.to.name);
    const Operation operation = io_shell.Begin(path);
    Qorv::ComPtr<Qorv::IAFS_FileInfo> info;
    const HRESULT result =
        io_shell.FileSystem().GetFileInfo(i_course.to.name, operation.Details(), operation.Cancel(), &info);
    if (result == E_INVALIDARG)
        return;
    operation.Check(result);
    throw Failure(HRESULT_FROM_WIN32(ERROR_FILE_EXISTS),
                  path + L" already exists in the account " + i_course.to.connection->id);
}

void CopyBetweenAccounts(Shell& io_shell, const Course& i_course) {
    RequireNewTarget(io_shell, i_course);
    const Operation reading = io_shell.Begin(i_course.from_path);
    const Operation writing = io_shell.Begin(DisplayPathOf(i_course.to.name));
    const auto source = OpenForReading(io_shell, i_course.from.name, reading);
    const auto target = OpenForReplacing(io_shell, i_course.to.name, writing);
    Transfer([&](void* o_data, ULONG i_size) { return source->Read(o_data, i_size); },
             [&](std::uint64_t, const void* i_data, ULONG i_size) { target->Write(i_data, i_size); });
    target->Close();
    source->Close();
}

void Delete(Shell& io_shell, Qorv::IAFS_Name* i_name, const std::wstring& i_path) {
    const Operation operation = io_shell.Begin(i_path);
    operation.Check(io_shell.FileSystem().Delete(i_name, operation.Details(), operation.Cancel()));
}

/// The new location of a rename, which stays in the same folder. Throws a `Failure` for a path.
std::wstring RenamedText(const Place& i_place, const std::wstring& i_new_name) {
    if (i_new_name.empty())
        throw Failure(E_INVALIDARG, L"The new name is empty");
    if (i_new_name.find(L'/') != i_new_name.npos)
        throw Failure(E_INVALIDARG, i_new_name + L": a name can't have a \"/\"; to move a file: qorvhost mv");
    const std::wstring location = LocationOf(i_place.name);
    return location.substr(0, location.find_last_of(L'/') + 1) + i_new_name;
}

} // namespace

void MakeFolder(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    const Operation operation = io_shell.Begin(location);
    operation.Check(io_shell.FileSystem().CreateFolder(place.name, operation.Details(), operation.Cancel()));
    Report(io_shell.Out(), L"Made the folder " + DisplayPathOf(place.name), LocationOf(place.name));
}

void RemoveItem(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    Delete(io_shell, place.name, location);
    Report(io_shell.Out(), L"Removed " + DisplayPathOf(place.name), LocationOf(place.name));
}

void MoveItem(Shell& io_shell, const CommandLine& i_line) {
    const Course course = ReadCourse(io_shell, i_line, L"moved; rename may do what you want");
    if (course.is_same_account) {
        const Operation operation = io_shell.Begin(course.from_path);
        operation.Check(
            io_shell.FileSystem().Move(course.from.name, course.to.name, operation.Details(), operation.Cancel()));
    } else {
        CopyBetweenAccounts(io_shell, course);
        Delete(io_shell, course.from.name, course.from_path); // Not before the copy is complete.
    }
    const auto& now = course.is_same_account ? course.from.name : course.to.name;
    Report(io_shell.Out(), L"Moved " + course.from_path + L" to " + DisplayPathOf(now), LocationOf(now));
}

void RenameItem(Shell& io_shell, const CommandLine& i_line) {
    const std::wstring location = i_line.Text("LOCATION");
    const Place place = io_shell.Locations().Find(location);
    const std::wstring old_path = DisplayPathOf(place.name);
    const auto new_name = io_shell.Locations().NameIn(*place.connection, RenamedText(place, i_line.Text("NEW-NAME")));
    const Operation operation = io_shell.Begin(location);
    operation.Check(io_shell.FileSystem().Rename(place.name, new_name, operation.Details(), operation.Cancel()));
    Report(io_shell.Out(), L"Renamed " + old_path + L" to " + DisplayPathOf(place.name), LocationOf(place.name));
}

void CopyItem(Shell& io_shell, const CommandLine& i_line) {
    const Course course = ReadCourse(io_shell, i_line, L"copied");
    if (course.is_same_account) {
        const Operation operation = io_shell.Begin(course.from_path);
        operation.Check(
            io_shell.FileSystem().Copy(course.from.name, course.to.name, operation.Details(), operation.Cancel()));
    } else {
        CopyBetweenAccounts(io_shell, course);
    }
    Report(io_shell.Out(), L"Copied " + course.from_path + L" to " + DisplayPathOf(course.to.name),
           LocationOf(course.to.name));
}

} // namespace DevHost
