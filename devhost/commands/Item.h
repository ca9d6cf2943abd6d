#pragma once

#include "commands/JsonValue.h"
#include "host/Operation.h"
#include "qorv/Afs.h"

#include <cstdint>
#include <string>

namespace DevHost {

/// What is shown of a file or folder.
struct Item {
    /// Asks the file system what it knows about a name; it knows everything about a name from an enumeration.
    static Item Read(Qorv::IAFS_FileSys& i_file_system, Qorv::IAFS_Name* i_name, const Operation& i_operation);

    void Write(JsonValue& io_json) const;

    /// Empty for a folder, else with spaces between the thousands.
    std::wstring SizeText() const;
    /// In the user's time zone; empty if unknown.
    std::wstring ModifiedText() const;

    std::wstring location;
    std::wstring title;
    std::wstring path; ///< Below the folder that was listed.
    bool is_folder = false;
    std::uint64_t size = 0;     ///< Bytes; 0 for a folder.
    std::uint64_t modified = 0; ///< A file time (UTC); 0 if unknown.
};

/// Whether a folder, or a file, is at a name, to explain a failure: a question that fails counts as no.
bool IsThere(Qorv::IAFS_FileSys& i_file_system, Qorv::IAFS_Name* i_name, bool i_as_folder,
             const Operation& i_operation);

} // namespace DevHost
