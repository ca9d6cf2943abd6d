#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Bench {

/// One line of the table.
struct Figure {
    /// What a figure must be: at least, or at most, `limit`. If there is a ratio, that is compared.
    struct Aim {
        bool is_minimum = false;
        double limit = 0;
    };

    std::string name;
    double value = 0;
    std::string unit;
    std::optional<double> reference = {}; ///< The same for the plain reference.
    std::optional<double> ratio = {};
    std::optional<double> cpu_ratio = {}; ///< Processor time over that of the reference.
    std::optional<Aim> aim = {};

    double Judged() const { return ratio.value_or(value); }
    bool IsReached() const { return !aim || (aim->is_minimum ? Judged() >= aim->limit : Judged() <= aim->limit); }
};

/// The figures: each is printed as soon as it is known, and all are written at the end.
class Report {
public:
    void PrintHead() const;
    void Add(Figure i_figure);
    /// Writes JSON. Throws std::runtime_error if the file cannot be written.
    void Write(const std::filesystem::path& i_path) const;

private:
    std::vector<Figure> m_figures;
};

} // namespace Bench
