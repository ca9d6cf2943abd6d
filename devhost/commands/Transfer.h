#pragma once

#include "commands/Shell.h"
#include "host/RemoteFile.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace DevHost {

/// A remote file that must exist.
std::unique_ptr<RemoteFile> OpenForReading(Shell& io_shell, Qorv::IAFS_Name* i_name, const Operation& i_operation);

/// A remote file with new bytes; replaces an existing one.
std::unique_ptr<RemoteFile> OpenForReplacing(Shell& io_shell, Qorv::IAFS_Name* i_name, const Operation& i_operation);

/// The destination of a file. With a trailing "/" it is a folder, and the file keeps its title.
std::wstring TargetText(const std::wstring& i_location, const std::wstring& i_title);

/// Copies bytes until the source ends: `i_read(buffer, size)` returns how many there were, `i_write(position, data,
/// size)` takes them all. Returns the total.
template <typename Read, typename Write>
std::uint64_t Transfer(Read&& i_read, Write&& i_write) {
    std::vector<BYTE> piece(std::size_t{64} * 1024);
    std::uint64_t position = 0;
    while (const ULONG size = i_read(piece.data(), static_cast<ULONG>(piece.size()))) {
        i_write(position, piece.data(), size);
        position += size;
    }
    return position;
}

} // namespace DevHost
