#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace Storm {

/// The bytes of a file.
using Content = std::shared_ptr<const std::string>;

Content MakeContent(std::string i_bytes);

/// A folder's contents, by path relative to it ("sub/deep.txt"). A folder has no content.
using Tree = std::map<std::string, Content>;

bool AreEqual(const Content& i_left, const Content& i_right);
bool AreEqual(const Tree& i_left, const Tree& i_right);

/// @returns an empty content for anything that is not a readable file
Content ReadContent(const std::filesystem::path& i_file);
void WriteContent(const std::filesystem::path& i_file, const std::string& i_bytes);

/// Everything except what the service has not completely received.
Tree ReadTree(const std::filesystem::path& i_folder);
/// Whether anything has not been completely received.
bool HasUnfinished(const std::filesystem::path& i_folder);

/// Makes the folder hold exactly this.
void WriteTree(const std::filesystem::path& i_folder, const Tree& i_tree);

/// One line per path: "a.txt: 12 bytes, hash 1a2b3c".
std::string Describe(const Tree& i_tree);
std::string Describe(const Content& i_content);

} // namespace Storm
