#pragma once

#include "services/CabNode.h"

#include <filesystem>

namespace DevHost {

/// The profile's file for a settings dictionary (JSON, UTF-8). Objects in a dictionary are not saved.
class CabFile {
public:
    explicit CabFile(std::filesystem::path i_path) : m_path(std::move(i_path)) {}

    bool Exists() const;

    /// Loads the dictionary; empty if there is no file. A damaged file is set aside, so that no later save destroys it,
    /// and reported as a `Failure`.
    CabNode::Node Load() const;

    /// Saves the dictionary; the old file stays until the new one is complete.
    void Save(const CabNode& i_dictionary) const;

    void Remove() const;

private:
    std::filesystem::path m_path;
};

} // namespace DevHost
