#pragma once

#include "commands/JsonValue.h"
#include "host/Operation.h"
#include "qorv/Afs.h"

#include <cstdint>
#include <string>

namespace DevHost {

/// What is shown of a file or folder.
struct Item {
    /// Asks the file system for what it knows of a name; of a name that came out of an enumeration it knows all.
    static Item Read(Qorv::IAFS_FileSys& i_file_system, Qorv::IAFS_Name* i_name, const Operation& i_operation);

    void Write(JsonValue& io_json) const;

    /// Empty for a folder, else with blanks between the thousands.
    std::wstring SizeText() const;
    /// In the user's time zone, empty when it is not known.
    std::wstring ModifiedText() const;

    std::wstring location;
    std::wstring title;
    std::wstring path; ///< Below the folder that was listed.
    bool is_folder = false;
    std::uint64_t size = 0;     ///< Bytes; 0 for a folder.
    std::uint64_t modified = 0; ///< A file time (UTC); 0 when it is not known.
};

} // namespace DevHost
