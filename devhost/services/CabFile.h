#pragma once

#include "services/CabNode.h"

#include <filesystem>

namespace DevHost {

/// The file of the profile that a settings dictionary is kept in (JSON, UTF-8). Objects in a dictionary are not kept.
class CabFile {
public:
    explicit CabFile(std::filesystem::path i_path) : m_path(std::move(i_path)) {}

    bool Exists() const;

    /// The dictionary, an empty one when there is no file. A damaged file is set aside, so that no later save destroys
    /// it, and reported as a `Failure`.
    CabNode::Node Load() const;

    /// Keeps the dictionary; the old file stays until the new one is complete.
    void Save(const CabNode& i_dictionary) const;

    void Remove() const;

private:
    std::filesystem::path m_path;
};

} // namespace DevHost
