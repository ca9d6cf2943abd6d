#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace Storm {

/// The bytes of a file.
using Content = std::shared_ptr<const std::string>;

Content MakeContent(std::string i_bytes);

/// What lies in a folder, by path relative to it ("sub/deep.txt"). A folder has no content.
using Tree = std::map<std::string, Content>;

bool AreEqual(const Content& i_left, const Content& i_right);
bool AreEqual(const Tree& i_left, const Tree& i_right);

/// @returns an empty content for what is no readable file
Content ReadContent(const std::filesystem::path& i_file);
void WriteContent(const std::filesystem::path& i_file, const std::string& i_bytes);

/// All but what the service has not completely received.
Tree ReadTree(const std::filesystem::path& i_folder);
/// Whether there is some of that.
bool HasUnfinished(const std::filesystem::path& i_folder);

/// Makes the folder hold exactly that.
void WriteTree(const std::filesystem::path& i_folder, const Tree& i_tree);

/// One line a path: "a.txt: 12 bytes, hash 1a2b3c".
std::string Describe(const Tree& i_tree);
std::string Describe(const Content& i_content);

} // namespace Storm
