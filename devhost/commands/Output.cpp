#include "commands/Output.h"

#include "base/Unicode.h"
#include "commands/JsonValue.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace DevHost {
namespace {

void Write(DWORD i_stream, std::string_view i_bytes) {
    while (!i_bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min<std::size_t>(i_bytes.size(), 1 << 20));
        if (!WriteFile(GetStdHandle(i_stream), i_bytes.data(), size, &written, nullptr) || written == 0)
            throw LastErrorFailure(L"Cannot write the output");
        i_bytes.remove_prefix(written);
    }
}

/// Counts code points: close enough to the columns that a text takes.
std::size_t WidthOf(std::wstring_view i_text) {
    return i_text.size() - static_cast<std::size_t>(std::ranges::count_if(i_text, [](wchar_t i_unit) {
               return i_unit >= 0xDC00 && i_unit <= 0xDFFF; // The second half of a pair
           }));
}

std::wstring CodeText(HRESULT i_code) {
    std::array<wchar_t, 16> text{};
    std::swprintf(text.data(), text.size(), L"0x%08lX", static_cast<unsigned long>(i_code));
    return text.data();
}

} // namespace

bool IsTerminal(DWORD i_stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(i_stream), &mode) != FALSE;
}

Output::Output(bool i_is_json) : m_is_json(i_is_json) {
    SetConsoleOutputCP(CP_UTF8);
}

void Output::Line(std::wstring_view i_text) const {
    Write(STD_OUTPUT_HANDLE, ToUtf8(i_text) + "\n");
}

void Output::Bytes(const void* i_data, std::size_t i_size) const {
    Write(STD_OUTPUT_HANDLE, {static_cast<const char*>(i_data), i_size});
}

void Output::Json(std::string_view i_value) const {
    Write(STD_OUTPUT_HANDLE, std::string(i_value) + "\n");
}

void Output::Table(const std::vector<std::vector<std::wstring>>& i_rows, std::size_t i_right_aligned) const {
    std::vector<std::size_t> widths;
    for (const auto& row : i_rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], WidthOf(row[column]));
    }
    std::wstring text;
    for (const auto& row : i_rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::wstring padding(widths[column] - WidthOf(row[column]), L' ');
            const bool is_last = column + 1 == row.size();
            text +=
                column == i_right_aligned ? padding + row[column] : row[column] + (is_last ? std::wstring() : padding);
            text += is_last ? L"\n" : L"  ";
        }
    }
    Write(STD_OUTPUT_HANDLE, ToUtf8(text));
}

void Output::Note(std::wstring_view i_text) const {
    const std::string line = "qorvhost: " + ToUtf8(OneLine(i_text)) + "\n";
    DWORD written = 0; // If errors cannot be written, that cannot be reported either.
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void Output::Error(const Failure& i_failure) const {
    const std::wstring text = OneLine(i_failure.Text());
    const std::wstring code = CodeText(i_failure.Code());
    if (m_is_json)
        Json(JsonValue().Begin().Text("error", text).Text("hresult", code).End().Done());
    Note(i_failure.Code() == Qorv::ErrorCanceled ? text : text + L" (HRESULT " + code + L")");
}

} // namespace DevHost
