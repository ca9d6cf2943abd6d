#include "ui/names/ShortenedName.h"

#include "core/trace/Trace.h"
#include "qorv/Base.h"

namespace Ui {
namespace {

constexpr std::size_t longest = 80;
constexpr std::size_t end_size = 30;
constexpr std::size_t beginning_size = longest - end_size - 1;

} // namespace

std::wstring ShortenedName(std::wstring_view i_name) {
    TRACE_FUNCTION();
    if (i_name.size() <= longest)
        return std::wstring(i_name);
    std::wstring_view beginning = i_name.substr(0, beginning_size);
    std::wstring_view end = i_name.substr(i_name.size() - end_size);
    if (IS_HIGH_SURROGATE(beginning.back())) // Half a character shows as a box.
        beginning.remove_suffix(1);
    if (IS_LOW_SURROGATE(end.front()))
        end.remove_prefix(1);
    return std::wstring(beginning) + L'\u2026' + std::wstring(end);
}

} // namespace Ui
