#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace DevHost {

/// A line on the terminal that tells how far a transfer is, once it has taken a second.
class ProgressLine {
public:
    using Writer = std::function<void(std::string_view)>;

    /// `i_write` writes to the terminal, in UTF-8. Without it nothing is shown.
    explicit ProgressLine(Writer i_write = nullptr) : m_write(std::move(i_write)) {}

    /// The transfer has done so many of its bytes; with the last one the line is erased. The time is in milliseconds.
    void Report(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total, std::uint64_t i_now);
    /// Removes the line, so that other text can take its place.
    void Erase();

private:
    Writer m_write;
    bool m_is_running = false;
    bool m_is_upload = false;
    std::uint64_t m_done = 0;
    std::uint64_t m_start = 0;
    std::uint64_t m_written = 0; ///< When the line was written last.
    std::size_t m_width = 0;     ///< Of the line that is there; 0 without one.
};

} // namespace DevHost
