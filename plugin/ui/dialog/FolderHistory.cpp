#include "ui/dialog/FolderHistory.h"

#include "core/trace/Trace.h"

#include <utility>

namespace Ui {

FolderHistory::FolderHistory() {
    TRACE_FUNCTION();
}

FolderHistory::~FolderHistory() {
    TRACE_FUNCTION();
}

void FolderHistory::Clear() noexcept {
    TRACE_FUNCTION();
    m_locations.clear();
    m_visited.clear();
    m_current = 0;
    m_wanted.reset();
}

void FolderHistory::Arrive(const std::wstring& i_location) {
    TRACE_FUNCTION();
    std::erase(m_visited, i_location);
    m_visited.push_back(i_location);
    const auto wanted = std::exchange(m_wanted, std::nullopt);
    if (wanted && m_locations[*wanted] == i_location) {
        m_current = *wanted;
        return;
    }
    if (!m_locations.empty()) {
        if (m_locations[m_current] == i_location)
            return; // Loaded again.
        m_locations.resize(m_current + 1);
    }
    m_locations.push_back(i_location);
    m_current = m_locations.size() - 1;
}

std::optional<std::size_t> FolderHistory::IndexOf(Direction i_direction) const noexcept {
    TRACE_FUNCTION();
    if (i_direction == Direction::back)
        return m_current > 0 ? std::optional(m_current - 1) : std::nullopt;
    return m_current + 1 < m_locations.size() ? std::optional(m_current + 1) : std::nullopt;
}

const std::wstring* FolderHistory::Target(Direction i_direction) const noexcept {
    TRACE_FUNCTION();
    const auto index = IndexOf(i_direction);
    return index ? &m_locations[*index] : nullptr;
}

void FolderHistory::Step(Direction i_direction) noexcept {
    TRACE_FUNCTION();
    m_wanted = IndexOf(i_direction);
}

std::vector<std::wstring> FolderHistory::Visited() const {
    TRACE_FUNCTION();
    return {m_visited.rbegin(), m_visited.rend()};
}

} // namespace Ui
