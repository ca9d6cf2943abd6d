#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Ui {

/// The folders that a dialog has shown, in order, with ways back and forward as in a browser. It keeps locations, not
/// names: what a name refers to may be gone. No window, no request.
class FolderHistory {
public:
    FolderHistory();
    ~FolderHistory();

    void Clear() noexcept;

    /// A folder is shown. What lay ahead is forgotten, unless this is where the last `Step` leads.
    void Arrive(const std::wstring& i_location);

    enum class Direction { back, forward };
    /// Where a step leads; null for nowhere.
    const std::wstring* Target(Direction i_direction) const noexcept;
    /// The folder where it leads is about to be shown.
    void Step(Direction i_direction) noexcept;

    /// Each folder once, the one shown last first.
    std::vector<std::wstring> Visited() const;

private:
    std::optional<std::size_t> IndexOf(Direction i_direction) const noexcept;

    std::vector<std::wstring> m_locations;
    std::size_t m_current = 0;           ///< The shown one, if there are any.
    std::optional<std::size_t> m_wanted; ///< Where the last step leads.
    std::vector<std::wstring> m_visited; ///< In the order of their last visits.
};

} // namespace Ui
