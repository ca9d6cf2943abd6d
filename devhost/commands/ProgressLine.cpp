#include "commands/ProgressLine.h"

#include <array>
#include <cstdio>
#include <string>

namespace DevHost {
namespace {

constexpr std::uint64_t time_without = 1000;
constexpr std::uint64_t time_between = 200;

/// "Uploading: 12.3 of 150.0 MB (8 %)"
std::string TextOf(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total) {
    constexpr double megabyte = 1e6;
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%s: %.1f of %.1f MB (%d %%)", i_is_upload ? "Uploading" : "Downloading",
                  static_cast<double>(i_done) / megabyte, static_cast<double>(i_total) / megabyte,
                  static_cast<int>(100 * static_cast<double>(i_done) / static_cast<double>(i_total)));
    return text.data();
}

} // namespace

void ProgressLine::Report(bool i_is_upload, std::uint64_t i_done, std::uint64_t i_total, std::uint64_t i_now) {
    if (!m_write)
        return;
    const bool is_new = !m_is_running || i_is_upload != m_is_upload || i_done <= m_done;
    m_is_upload = i_is_upload;
    m_done = i_done;
    if (is_new)
        m_start = i_now;
    m_is_running = i_done < i_total;
    if (!m_is_running) {
        Erase();
        return;
    }
    if (i_now - m_start < time_without || (m_width != 0 && i_now - m_written < time_between))
        return;
    std::string text = TextOf(i_is_upload, i_done, i_total);
    const std::size_t width = text.size();
    if (width < m_width)
        text.append(m_width - width, ' ');
    m_write("\r" + text);
    m_width = width;
    m_written = i_now;
}

void ProgressLine::Erase() {
    if (m_width != 0)
        m_write("\r" + std::string(m_width, ' ') + "\r");
    m_width = 0;
}

} // namespace DevHost
