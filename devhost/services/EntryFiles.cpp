#include "services/EntryFiles.h"

#include "base/Failure.h"
#include "base/Unicode.h"

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <vector>

namespace DevHost {
namespace {

namespace fs = std::filesystem;

// "<id>-<title>" holds the bytes, "<id>-<title>.note" the note.
constexpr wchar_t note_ending[] = L".note";
constexpr char location_member[] = "location";
constexpr wchar_t replaced_folder[] = L"replaced";
constexpr std::size_t max_title_length = 60; // Full paths must stay below the system's 260 characters.

std::wstring NewId() {
    GUID guid{};
    Check(CoCreateGuid(&guid), L"Cannot name a file");
    std::array<wchar_t, 9> text{};
    std::swprintf(text.data(), text.size(), L"%08lx", guid.Data1);
    return text.data();
}

/// The last part of a location as a local file name. It keeps its extension, so that a double-click opens the file.
std::wstring TitleOf(const std::wstring& i_location) {
    std::wstring title = i_location.substr(i_location.find_last_of(L'/') + 1);
    if (title.size() > max_title_length)
        title.erase(0, title.size() - max_title_length);
    constexpr std::wstring_view forbidden = L"<>:\"/\\|?*";
    std::ranges::replace_if(
        title, [&](wchar_t i_c) { return i_c < L' ' || forbidden.find(i_c) != forbidden.npos; }, L'_');
    while (!title.empty() && (title.back() == L'.' || title.back() == L' '))
        title.pop_back(); // The system drops them silently.
    if (title.ends_with(note_ending))
        title += L'_'; // Bytes must never look like a note.
    return title;
}

bool IsNote(const fs::path& i_path) {
    return i_path.extension() == note_ending;
}

fs::path NoteOf(fs::path i_bytes) {
    i_bytes += note_ending;
    return i_bytes;
}

fs::path BytesOf(fs::path i_note) {
    return i_note.replace_extension();
}

/// Empty for a damaged note, whose bytes are left alone.
std::wstring LocationOf(const fs::path& i_note) {
    const std::string bytes = ReadWholeFile(i_note);
    rapidjson::Document document;
    document.Parse<rapidjson::kParseIterativeFlag>(bytes.data(), bytes.size());
    if (document.HasParseError() || !document.IsObject())
        return {};
    const rapidjson::Value& note = document;
    const auto location = note.FindMember(location_member);
    if (location == note.MemberEnd() || !location->value.IsString())
        return {};
    return FromUtf8({location->value.GetString(), location->value.GetStringLength()});
}

/// The plain files of the folder; none if it cannot be read.
std::vector<fs::path> FilesIn(const fs::path& i_folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(i_folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unreadable; // One such file must not hide the others.
        if (entry->is_regular_file(unreadable))
            files.push_back(entry->path());
    }
    return files;
}

} // namespace

std::wstring KeptFile::Id() const {
    const std::wstring name = path.filename().wstring();
    return name.substr(0, name.find(L'-'));
}

EntryFiles EntryFiles::Create(const fs::path& i_folder, const std::wstring& i_location) {
    std::error_code ignored; // Creating the file reports what is wrong.
    fs::create_directories(i_folder, ignored);
    return EntryFiles(LocalFile(i_folder / (NewId() + L"-" + TitleOf(i_location)), LocalFile::Mode::CreateNew));
}

std::optional<EntryFiles> EntryFiles::FindAbandoned(const fs::path& i_folder, const std::wstring& i_location) {
    std::optional<EntryFiles> newest;
    for (const fs::path& note : FilesIn(i_folder)) {
        try {
            if (!IsNote(note) || !EqualIgnoringCase(LocationOf(note), i_location))
                continue;
            LocalFile bytes(BytesOf(note), LocalFile::Mode::ReadWrite);
            if (!newest || bytes.WriteTime() > newest->Bytes().WriteTime())
                newest = EntryFiles(std::move(bytes));
        } catch (const Failure&) {
            // Another process has it open, or has removed it.
        }
    }
    return newest;
}

std::vector<KeptFile> EntryFiles::ListKept(const fs::path& i_folder) {
    std::vector<KeptFile> kept;
    for (const fs::path& note : FilesIn(i_folder)) {
        try {
            if (!IsNote(note))
                continue;
            LocalFile bytes(BytesOf(note), LocalFile::Mode::Read);
            kept.push_back({bytes.Path(), LocationOf(note), bytes.Size(), bytes.WriteTime()});
        } catch (const Failure&) {
            // Another process has removed it.
        }
    }
    std::ranges::sort(kept, {}, &KeptFile::write_time);
    return kept;
}

EntryFiles EntryFiles::Adopt(const fs::path& i_bytes) {
    return EntryFiles(LocalFile(i_bytes, LocalFile::Mode::ReadWrite));
}

void EntryFiles::CleanUp(const fs::path& i_folder) {
    std::error_code error;
    for (const fs::path& file : FilesIn(i_folder)) {
        const bool is_abandoned = IsNote(file) ? !fs::exists(BytesOf(file), error) : !fs::exists(NoteOf(file), error);
        if (is_abandoned && !error)
            DeleteFileW(file.c_str()); // Fails, as it should, if another process has it open.
    }
}

void EntryFiles::WriteNote(const std::wstring& i_location) const {
    const std::string location = ToUtf8(i_location);
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.StartObject();
    writer.Key(location_member);
    writer.String(location.data(), static_cast<rapidjson::SizeType>(location.size()));
    writer.EndObject();
    WriteFileAtomically(NotePath(), {buffer.GetString(), buffer.GetSize()});
}

void EntryFiles::RemoveNote() const {
    DeleteFileW(NotePath().c_str()); // If one stays, the bytes are sent again, which does no harm.
}

void EntryFiles::Remove() {
    m_bytes.Close();
    DeleteFileW(BytesPath().c_str());
    RemoveNote();
}

fs::path EntryFiles::MoveToReplaced() {
    const fs::path place = BytesPath().parent_path() / replaced_folder / BytesPath().filename();
    std::error_code ignored; // Moving the file reports what is wrong.
    fs::create_directories(place.parent_path(), ignored);
    m_bytes.Close();
    MoveLocalFile(BytesPath(), place);
    RemoveNote();
    return place;
}

fs::path EntryFiles::NotePath() const {
    return NoteOf(BytesPath());
}

} // namespace DevHost
