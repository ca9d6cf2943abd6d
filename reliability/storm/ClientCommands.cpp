// What a client does, and what each command may change in its folder.

#include "Client.h"

#include <algorithm>
#include <array>
#include <thread>

#include <rapidjson/document.h>

#include "Rules.h"

namespace Storm {

namespace fs = std::filesystem;

namespace {

const std::array<std::string, 8> file_names = {"a.txt",
                                               "Quarterly Report.pdf",
                                               "b #100% & co.txt",
                                               "été à Paris.pdf",
                                               "日本語の文書.pdf",
                                               "sub/deep.pdf",
                                               "sub/second.txt",
                                               "x"};
const std::array<std::string, 3> folder_names = {"sub", "New folder", "sub/Inner"};

std::string Quoted(const fs::path& i_path) {
    return "\"" + WindowsPath(i_path) + "\"";
}

std::string ParentOf(const std::string& i_path) {
    const std::size_t slash = i_path.rfind('/');
    return slash == i_path.npos ? std::string() : i_path.substr(0, slash);
}

bool IsBelow(const std::string& i_path, const std::string& i_folder) {
    return i_path.starts_with(i_folder + "/");
}

/// Name, and size or "folder", of every item listed.
using Listing = std::map<std::string, std::string>;

std::string SizeText(const rapidjson::Value& i_item) {
    return i_item["is_folder"].GetBool() ? "folder" : std::to_string(i_item["size"].GetUint64());
}

Listing ReadListing(const std::string& i_json, const std::string& i_folder) {
    rapidjson::Document items;
    items.Parse(i_json.data(), i_json.size());
    Listing listing;
    for (const rapidjson::Value& item : items.GetArray()) {
        const std::string location = item["location"].GetString();
        const std::size_t begin = location.find(i_folder);
        listing[begin == location.npos ? location : location.substr(begin + i_folder.size())] = SizeText(item);
    }
    return listing;
}

Listing ListingOf(const Tree& i_tree, bool i_all) {
    Listing listing;
    for (const auto& [path, content] : i_tree)
        if (i_all || ParentOf(path).empty())
            listing[path] = content == nullptr ? "folder" : std::to_string(content->size());
    return listing;
}

} // namespace

void Client::Step() {
    const std::uint64_t chance = m_dice.Below(100);
    if (chance < 30)
        Save();
    else if (chance < 42)
        Edit();
    else if (chance < 62)
        Get();
    else if (chance < 66)
        ShowItem();
    else if (chance < 72)
        List(m_dice.OneIn(2));
    else if (chance < 78)
        Remove();
    else if (chance < 82)
        MakeFolder();
    else if (chance < 92)
        Relocate();
    else if (chance < 96)
        SaveShared();
    else
        GetShared();
}

/// A name for a file in an existing folder.
std::string Client::PickPath() {
    for (;;) {
        const std::string& path = m_dice.Pick(std::span<const std::string>(file_names));
        if (ParentOf(path).empty() || m_tree.contains(ParentOf(path)))
            return path;
    }
}

std::optional<std::string> Client::PickFile() {
    std::vector<std::string> files;
    for (const auto& [path, content] : m_tree)
        if (content != nullptr)
            files.push_back(path);
    if (files.empty())
        return std::nullopt;
    return m_dice.Pick(std::span<const std::string>(files));
}

Content Client::NewContent() {
    constexpr std::uint64_t piece = 65'536;
    const std::uint64_t size = m_dice.OneIn(12)  ? 0
                               : m_dice.OneIn(8) ? m_dice.Pick({piece - 1, piece, piece + 1, 4 * piece})
                               : m_dice.OneIn(9) ? m_dice.Below(24 * piece)
                                                 : 1 + m_dice.Below(9'000);
    std::string bytes(size, '\0');
    std::uint64_t state = m_dice.Below(UINT64_MAX) | 1;
    for (char& byte : bytes) { // No two contents are alike, nor are any two pages of them.
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        byte = static_cast<char>(state);
    }
    return MakeContent(std::move(bytes));
}

void Client::Save() {
    const std::string path = PickPath();
    const Content content = NewContent();
    const fs::path file = NewLocalFile();
    WriteContent(file, *content);
    const bool is_put = !m_uses_lasting_host || m_dice.OneIn(3);
    ++m_figures.uploads;
    const Answer answer = Run((is_put ? "put " : "save ") + Quoted(file) + " " + Location(path));
    m_kept.OnNotes(answer, path);
    if (!answer.IsDone() && (is_put || answer.was_closing))
        m_kept.OnFailedClose(answer, path, content, is_put);
    Trees failed;
    if (!m_tree.contains(path)) // A new file is first created empty.
        failed.push_back(With(path, MakeContent({})));
    Expect(answer, With(path, content), failed);
    if (!AreEqual(ReadContent(file), content))
        throw RuleBroken("the local file has changed: " + file.string());
    fs::remove(file);
}

void Client::SaveAndDie() {
    // A program's first connection takes Wine's lock on the certificates of the system. One that is killed meanwhile
    // never releases it, and all programs after it would wait for it for ever.
    if (m_host == nullptr)
        List(false);
    const std::string path = PickPath();
    const Content content = NewContent();
    const fs::path file = NewLocalFile();
    WriteContent(file, *content);
    const std::string command = "save " + Quoted(file) + " " + Location(path);
    Note("> " + command + "\n");
    ++m_figures.kills;
    TheHost().RunAndKill(command, std::chrono::milliseconds(m_dice.Below(150)));
    m_host.reset();
    m_batches_of_process = 0;
    m_proxy.WaitForQuiet();
    Note(m_proxy.TakeLog() + "  the process was ended\n");
    Answer answer;
    answer.is_lost = true;
    m_harm = 1;
    Trees failed;
    if (!m_tree.contains(path))
        failed.push_back(With(path, MakeContent({})));
    Expect(answer, With(path, content), failed);
    m_kept.FindAgain(path, content);
    fs::remove(file);
}

void Client::Edit() {
    const auto path = PickFile();
    if (!path || !m_uses_lasting_host)
        return;
    const std::string text = "edited-" + std::to_string(m_dice.Below(UINT64_MAX));
    const fs::path seen_file = NewLocalFile();
    ++m_figures.uploads;
    const Answer answer = Run("edit " + Location(*path) + " " + Quoted(seen_file) + " " + text);
    std::optional<Tree> done = m_tree;
    if (answer.was_closing) {
        const Content seen = ReadContent(seen_file);
        const bool was_kept = m_kept.TakeUp(*path, seen);
        if (seen == nullptr || (!was_kept && !AreEqual(seen, m_tree.at(*path))))
            throw RuleBroken("the document that was opened had " + Describe(seen) + " instead of " +
                             Describe(m_tree.at(*path)) + "\n" + answer.Text());
        const Content edited = MakeContent(*seen + text);
        if (!answer.IsDone())
            m_kept.OnFailedClose(answer, *path, edited, false);
        done = With(*path, edited);
    }
    m_kept.OnNotes(answer, *path);
    Expect(answer, done, {});
    fs::remove(seen_file);
}

void Client::Get() {
    const auto file_there = PickFile();
    const std::string path = file_there && !m_dice.OneIn(5) ? *file_there : PickPath();
    const fs::path file = NewLocalFile();
    const Content before = m_dice.OneIn(2) ? MakeContent("what was here before") : nullptr;
    if (before != nullptr)
        WriteContent(file, *before);
    const Answer answer = Run("get " + Location(path) + " " + Quoted(file));
    const bool is_there = m_tree.contains(path);
    Expect(answer, is_there ? std::optional(m_tree) : std::nullopt, {});
    const Content now = ReadContent(file);
    const Content expected = answer.IsDone() ? m_tree.at(path) : before;
    if (!AreEqual(now, expected))
        throw RuleBroken("the local file has " + Describe(now) + " instead of " + Describe(expected) + "\n" +
                         answer.Text());
    m_figures.downloads += answer.IsDone() ? 1 : 0;
    fs::remove(file);
    if (!fs::is_empty(file.parent_path()))
        throw RuleBroken("something was left in " + file.parent_path().string());
}

void Client::ShowItem() {
    const std::string path = PickPath();
    const Answer answer = Run("stat " + Location(path));
    Expect(answer, m_tree.contains(path) ? std::optional(m_tree) : std::nullopt, {});
    if (!answer.IsDone())
        return;
    rapidjson::Document item;
    item.Parse(answer.json.data(), answer.json.size());
    if (SizeText(item) != std::to_string(m_tree.at(path)->size()))
        throw RuleBroken("the size is another: " + answer.json);
}

void Client::List(bool i_all) {
    const Answer answer = Run(std::string(i_all ? "ls -R " : "ls ") + "\"/" + m_setting.name + "\"");
    Expect(answer, m_tree, {});
    if (answer.IsDone() && ReadListing(answer.json, "/" + m_setting.name + "/") != ListingOf(m_tree, i_all))
        throw RuleBroken("the listing differs from\n" + Describe(m_tree) + answer.Text());
}

void Client::Remove() {
    const bool is_folder = m_dice.OneIn(4);
    const std::string path = is_folder ? m_dice.Pick(std::span<const std::string>(folder_names)) : PickPath();
    const Answer answer = Run("rm " + Location(path));
    std::optional<Tree> done;
    if (m_tree.contains(path)) {
        done = m_tree;
        std::erase_if(*done, [&](const auto& i_item) { return i_item.first == path || IsBelow(i_item.first, path); });
    }
    Expect(answer, done, {});
}

void Client::MakeFolder() {
    const std::string path = m_dice.Pick(std::span<const std::string>(folder_names));
    const Answer answer = Run("mkdir " + Location(path));
    Tree done = With(path, nullptr);
    if (const std::string parent = ParentOf(path); !parent.empty())
        done[parent] = nullptr; // The service creates the parent folders as well.
    Expect(answer, m_tree.contains(path) ? std::nullopt : std::optional(done), {});
}

void Client::Relocate() {
    const auto from = PickFile();
    const std::string to = PickPath();
    if (!from || *from == to)
        return;
    std::string verb = m_dice.Pick({"mv", "cp", "rename"});
    if (verb == "rename" && ParentOf(*from) != ParentOf(to))
        verb = "mv"; // A rename takes a bare name within the folder.
    const std::string target = verb == "rename" ? "\"" + to.substr(to.rfind('/') + 1) + "\"" : Location(to);
    const Answer answer = Run(verb + " " + Location(*from) + " " + target);
    std::optional<Tree> done;
    if (!m_tree.contains(to)) {
        done = With(to, m_tree.at(*from));
        if (verb != "cp")
            done->erase(*from);
    }
    // The service completes the move before the new place is read.
    Expect(answer, done, {});
}

void Client::SaveShared() {
    const Content content = NewContent();
    const fs::path file = NewLocalFile();
    WriteContent(file, *content);
    m_shared.OnWriting(m_setting.name, content);
    const bool is_put = !m_uses_lasting_host;
    ++m_figures.uploads;
    const Answer answer = Run((is_put ? "put " : "save ") + Quoted(file) + " \"/" + std::string(shared_path) + "\"");
    m_kept.OnNotes(answer, shared_path);
    if (answer.IsDone())
        m_shared.OnWritten(m_setting.name);
    else if (answer.was_closing)
        m_kept.OnFailedClose(answer, shared_path, content, is_put);
    fs::remove(file);
}

void Client::GetShared() {
    const fs::path file = NewLocalFile();
    const Answer answer = Run("get \"/" + std::string(shared_path) + "\" " + Quoted(file));
    const Content now = ReadContent(file);
    if (answer.IsDone() ? !m_shared.MayBeSeen(now) : now != nullptr)
        throw RuleBroken("the shared file has " + Describe(now) + ", which nobody wrote\n" + answer.Text());
    m_figures.downloads += answer.IsDone() ? 1 : 0;
    fs::remove(file);
}

} // namespace Storm
