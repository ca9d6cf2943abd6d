#include "Folder.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>

namespace Storm {

namespace fs = std::filesystem;

namespace {

/// The service's name for a file that it has not completely received.
constexpr std::string_view unfinished = ".devservice-";

} // namespace

Content MakeContent(std::string i_bytes) {
    return std::make_shared<const std::string>(std::move(i_bytes));
}

bool AreEqual(const Content& i_left, const Content& i_right) {
    return i_left == nullptr || i_right == nullptr ? i_left == i_right : *i_left == *i_right;
}

bool AreEqual(const Tree& i_left, const Tree& i_right) {
    return std::ranges::equal(i_left, i_right, [](const auto& i_one, const auto& i_other) {
        return i_one.first == i_other.first && AreEqual(i_one.second, i_other.second);
    });
}

Content ReadContent(const fs::path& i_file) {
    std::ifstream stream(i_file, std::ios::binary);
    if (!stream)
        return nullptr;
    return MakeContent(std::string(std::istreambuf_iterator<char>(stream), {}));
}

void WriteContent(const fs::path& i_file, const std::string& i_bytes) {
    std::ofstream stream(i_file, std::ios::binary | std::ios::trunc);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.write(i_bytes.data(), static_cast<std::streamsize>(i_bytes.size()));
}

Tree ReadTree(const fs::path& i_folder) {
    Tree tree;
    for (const auto& entry : fs::recursive_directory_iterator(i_folder)) {
        if (entry.path().filename().string().starts_with(unfinished)) // It will be gone in a moment: see HasUnfinished.
            continue;
        const std::string path = entry.path().lexically_relative(i_folder).generic_string();
        tree[path] = entry.is_directory() ? nullptr : ReadContent(entry.path());
    }
    return tree;
}

bool HasUnfinished(const fs::path& i_folder) {
    const fs::recursive_directory_iterator entries(i_folder);
    return std::ranges::any_of(entries, [](const fs::directory_entry& i_entry) {
        return i_entry.path().filename().string().starts_with(unfinished);
    });
}

void WriteTree(const fs::path& i_folder, const Tree& i_tree) {
    fs::remove_all(i_folder);
    fs::create_directories(i_folder);
    for (const auto& [path, content] : i_tree) // A folder comes before its contents.
        if (content == nullptr)
            fs::create_directories(i_folder / path);
        else
            WriteContent(i_folder / path, *content);
}

std::string Describe(const Content& i_content) {
    if (i_content == nullptr)
        return "no file";
    return std::to_string(i_content->size()) + " bytes, hash " + std::to_string(std::hash<std::string>()(*i_content));
}

std::string Describe(const Tree& i_tree) {
    std::string text;
    for (const auto& [path, content] : i_tree)
        text += "    " + path + ": " + (content == nullptr ? "folder" : Describe(content)) + "\n";
    return text.empty() ? "    nothing\n" : text;
}

} // namespace Storm
