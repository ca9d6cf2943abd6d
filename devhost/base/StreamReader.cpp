#include "base/StreamReader.h"

#include "base/Failure.h"

#include <array>

namespace DevHost {

std::string ReadToEnd(IStream* i_stream) {
    std::string bytes;
    std::array<char, 16384> piece;
    for (ULONG read = 1; read != 0;) {
        read = 0;
        Check(i_stream->Read(piece.data(), ULONG{piece.size()}, &read), L"Cannot read a stream");
        bytes.append(piece.data(), read);
    }
    return bytes;
}

} // namespace DevHost
