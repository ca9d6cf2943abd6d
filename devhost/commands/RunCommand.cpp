#include "commands/Commands.h"

#include "base/LocalFile.h"
#include "base/Unicode.h"
#include "commands/Shell.h"

#include <algorithm>

namespace DevHost {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

Arguments ReadLine(std::wstring_view i_line, const std::wstring& i_place) {
    try {
        return SplitLine(i_line);
    } catch (const UsageError& error) {
        throw UsageError(i_place + L": " + error.Text());
    }
}

} // namespace

void RunScript(Shell& io_shell, const Arguments& i_arguments) {
    const std::wstring& path = i_arguments.front();
    std::string text = ReadWholeFile(path);
    if (text.starts_with(byte_order_mark))
        text.erase(0, byte_order_mark.size());
    size_t number = 0;
    for (size_t begin = 0; begin < text.size(); ++number) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        const std::wstring line = FromUtf8(std::string_view(text).substr(begin, end - begin));
        begin = end + 1;
        const bool may_fail = line.starts_with(L'-');
        const std::wstring place = path + L":" + std::to_wstring(number + 1);
        const Arguments command = ReadLine(std::wstring_view(line).substr(may_fail ? 1 : 0), place);
        if (command.empty())
            continue;
        if (command.front() == L"run")
            throw UsageError(place + L": a file of commands cannot run another one");
        const int result = io_shell.Execute(command);
        if (result != 0 && !may_fail)
            throw ScriptStopped{place, result};
    }
}

} // namespace DevHost
