#pragma once

#include <cstdint>

namespace Dropbox::Utility {

/// Turns a time stamp of the service ("2015-05-12T15:50:38Z") into a file time: 100-nanosecond intervals since 1601,
/// UTC. Whatever follows the seconds is ignored, and an impossible date is 0. Throws an `Exception` for any other
/// format.
std::uint64_t ParseDateTime(const wchar_t* text);

} // namespace Dropbox::Utility
