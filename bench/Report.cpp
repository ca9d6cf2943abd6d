#include "Report.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace Bench {
namespace {

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

constexpr char row_format[] = "%-38s %12s %12s %8s %8s %8s  %s\n";

std::string Digits(double i_number, int i_decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", i_decimals, i_number);
    return text;
}

/// Three significant digits; more only before the decimal point.
std::string Quantity(double i_number) {
    const double size = std::fabs(i_number);
    return Digits(i_number, size >= 100 ? 0 : size >= 10 ? 1 : 2);
}

std::string Ratio(const std::optional<double>& i_ratio) {
    return i_ratio ? Digits(*i_ratio, 3) : "";
}

std::string AimText(const Figure& i_figure) {
    if (!i_figure.aim)
        return "";
    return (i_figure.aim->is_minimum ? ">= " : "<= ") + Quantity(i_figure.aim->limit);
}

void WriteOptional(Writer& io_json, const char* i_name, const std::optional<double>& i_value) {
    if (!i_value)
        return;
    io_json.Key(i_name);
    io_json.Double(*i_value);
}

void WriteFigure(Writer& io_json, const Figure& i_figure) {
    io_json.StartObject();
    io_json.Key("name");
    io_json.String(i_figure.name.c_str());
    io_json.Key("unit");
    io_json.String(i_figure.unit.c_str());
    io_json.Key("value");
    io_json.Double(i_figure.value);
    WriteOptional(io_json, "reference", i_figure.reference);
    WriteOptional(io_json, "ratio", i_figure.ratio);
    WriteOptional(io_json, "cpu_ratio", i_figure.cpu_ratio);
    if (i_figure.aim) {
        io_json.Key(i_figure.aim->is_minimum ? "at_least" : "at_most");
        io_json.Double(i_figure.aim->limit);
        io_json.Key("is_reached");
        io_json.Bool(i_figure.IsReached());
    }
    io_json.EndObject();
}

} // namespace

void Report::PrintHead() const {
    std::printf(row_format, "", "module", "reference", "ratio", "cpu", "aim", "");
}

void Report::Add(Figure i_figure) {
    std::printf(row_format, i_figure.name.c_str(), (Quantity(i_figure.value) + " " + i_figure.unit).c_str(),
                i_figure.reference ? (Quantity(*i_figure.reference) + " " + i_figure.unit).c_str() : "",
                Ratio(i_figure.ratio).c_str(), Ratio(i_figure.cpu_ratio).c_str(), AimText(i_figure).c_str(),
                i_figure.IsReached() ? "" : "missed");
    std::fflush(stdout);
    m_figures.push_back(std::move(i_figure));
}

void Report::Write(const std::filesystem::path& i_path) const {
    rapidjson::StringBuffer buffer;
    Writer json(buffer);
    json.SetMaxDecimalPlaces(4);
    json.StartArray();
    for (const Figure& figure : m_figures)
        WriteFigure(json, figure);
    json.EndArray();
    std::ofstream file(i_path, std::ios::binary);
    file << buffer.GetString() << "\n";
    if (!file.flush())
        throw std::runtime_error("cannot write " + i_path.string());
}

} // namespace Bench
